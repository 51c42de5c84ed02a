#pragma once
// The process-wide switch of the level warnings that reading a sheet or a data sheet shows when
// its level differs from its game system's. It is on by default; batch conversion turns it off
// while it opens sheets.

namespace zv {

bool levelWarningsOn();
void setLevelWarningsOn(bool on);

/// Turns the warnings off for its lifetime and puts back the former state afterwards.
class LevelWarningsOff {
 public:
  LevelWarningsOff() : previous_(levelWarningsOn()) { setLevelWarningsOn(false); }
  ~LevelWarningsOff() { setLevelWarningsOn(previous_); }
  LevelWarningsOff(const LevelWarningsOff&) = delete;
  LevelWarningsOff& operator=(const LevelWarningsOff&) = delete;

 private:
  bool previous_;
};

}  // namespace zv
