// Compiling a regular expression: a recursive-descent parser builds a small tree, checking the
// pattern as it goes, and the tree is then laid out as the instruction list of regex_program.h.

#include <new>

#include "expr/regex.h"

namespace zv {

using regex_detail::ByteSet;
using regex_detail::Instruction;
using regex_detail::Op;

namespace {

struct Node {
  enum class Kind { Empty, Byte, Any, Set, Bol, Eol, Group, Sequence, Alternation, Repeat };
  Kind kind = Kind::Empty;
  unsigned char byte = 0;
  uint32_t index = 0;  // Set: the set's number; Group: the group's number
  char repeat = 0;     // Repeat: '*', '+' or '?'
  std::vector<int> children = {};
};

// A parsed part of the pattern: its node, and whether every way of matching it consumes at least
// one byte. Repeating with "*" or "+" needs that, so that no loop can turn without progress.
struct Part {
  int node = -1;
  bool hasWidth = false;
};

bool isRepeatOperator(char c) {
  return c == '*' || c == '+' || c == '?';
}

bool isOneByteTest(const Node& node) {
  return node.kind == Node::Kind::Byte || node.kind == Node::Kind::Any ||
         node.kind == Node::Kind::Set;
}

}  // namespace

class RegexCompiler {
 public:
  RegexCompiler(std::string_view pattern, Regex& regex) : pattern_(pattern), regex_(regex) {}

  // Parses and lays out the whole pattern; null on success, otherwise the message.
  const char* run() {
    std::optional<Part> top = parseAlternation();
    if (!top) return error_;
    if (pos_ < pattern_.size()) return pattern_[pos_] == ')' ? "unmatched ()" : "junk on end";
    regex_.groups_ = groups_;
    emit(top->node);
    regex_.program_.push_back(Instruction{});  // Op::Match
    uint64_t size = 0;
    for (const Instruction& in : regex_.program_)
      size += regex_detail::encodedSize(in);
    if (size >= Regex::kProgramSizeLimit) return "regexp too big";
    regex_.size_ = static_cast<uint32_t>(size);
    findStart();
    return nullptr;
  }

 private:
  // --- Parsing ---

  std::optional<Part> fail(const char* message) {
    error_ = message;
    return std::nullopt;
  }

  int addNode(Node node) {
    nodes_.push_back(std::move(node));
    return static_cast<int>(nodes_.size() - 1);
  }

  bool at(char c) const { return pos_ < pattern_.size() && pattern_[pos_] == c; }

  // Branches separated by "|". Has width only when every branch has.
  std::optional<Part> parseAlternation() {
    std::vector<int> branches;
    bool hasWidth = true;
    for (;;) {
      std::optional<Part> branch = parseBranch();
      if (!branch) return std::nullopt;
      branches.push_back(branch->node);
      hasWidth = hasWidth && branch->hasWidth;
      if (!at('|')) break;
      ++pos_;
    }
    if (branches.size() == 1) return Part{branches.front(), hasWidth};
    return Part{addNode(Node{Node::Kind::Alternation, 0, 0, 0, std::move(branches)}), hasWidth};
  }

  // Pieces up to "|", ")" or the end. Has width when any piece has.
  std::optional<Part> parseBranch() {
    std::vector<int> pieces;
    bool hasWidth = false;
    while (pos_ < pattern_.size() && !at('|') && !at(')')) {
      std::optional<Part> piece = parsePiece();
      if (!piece) return std::nullopt;
      pieces.push_back(piece->node);
      hasWidth = hasWidth || piece->hasWidth;
    }
    if (pieces.empty()) return Part{addNode(Node{}), false};
    if (pieces.size() == 1) return Part{pieces.front(), hasWidth};
    return Part{addNode(Node{Node::Kind::Sequence, 0, 0, 0, std::move(pieces)}), hasWidth};
  }

  // An atom with an optional "*", "+" or "?".
  std::optional<Part> parsePiece() {
    std::optional<Part> atom = parseAtom();
    if (!atom || pos_ >= pattern_.size() || !isRepeatOperator(pattern_[pos_])) return atom;
    char op = pattern_[pos_++];
    if (!atom->hasWidth && op != '?') return fail("*+ operand could be empty");
    if (pos_ < pattern_.size() && isRepeatOperator(pattern_[pos_])) return fail("nested *?+");
    int node = addNode(Node{Node::Kind::Repeat, 0, 0, op, {atom->node}});
    return Part{node, op == '+'};
  }

  std::optional<Part> parseAtom() {
    char c = pattern_[pos_++];
    switch (c) {
      case '^':
        return Part{addNode(Node{Node::Kind::Bol}), false};
      case '$':
        return Part{addNode(Node{Node::Kind::Eol}), false};
      case '.':
        return Part{addNode(Node{Node::Kind::Any}), true};
      case '[':
        return parseSet();
      case '(': {
        if (groups_ >= Regex::kMaxGroups) return fail("too many ()");
        uint32_t number = static_cast<uint32_t>(++groups_);
        std::optional<Part> inner = parseAlternation();
        if (!inner) return std::nullopt;
        if (!at(')')) return fail("unmatched ()");
        ++pos_;
        int node = addNode(Node{Node::Kind::Group, 0, number, 0, {inner->node}});
        return Part{node, inner->hasWidth};
      }
      case '|':
      case ')':
        // A branch stops before these, so an atom never starts with one.
        return fail("internal urp");
      case '*':
      case '+':
      case '?':
        return fail("?+* follows nothing");
      case '\\':
        if (pos_ >= pattern_.size()) return fail("trailing \\");
        return byteAtom(static_cast<unsigned char>(pattern_[pos_++]));
      default:
        return byteAtom(static_cast<unsigned char>(c));
    }
  }

  Part byteAtom(unsigned char byte) { return Part{addNode(Node{Node::Kind::Byte, byte}), true}; }

  // After "[": members up to "]". A "]" or "-" first is a member, as is a "-" last; "x-y" adds
  // the bytes from x to y.
  std::optional<Part> parseSet() {
    ByteSet set;
    bool complement = at('^');
    if (complement) ++pos_;
    if (at(']') || at('-')) set.set(static_cast<unsigned char>(pattern_[pos_++]));
    while (pos_ < pattern_.size() && !at(']')) {
      if (!at('-')) {
        set.set(static_cast<unsigned char>(pattern_[pos_++]));
        continue;
      }
      ++pos_;
      if (pos_ >= pattern_.size() || at(']')) {
        set.set('-');
        continue;
      }
      // The range starts at the byte written before the "-" (already a member).
      unsigned from = static_cast<unsigned char>(pattern_[pos_ - 2]);
      unsigned to = static_cast<unsigned char>(pattern_[pos_]);
      if (from > to) return fail("invalid [] range");
      for (unsigned b = from; b <= to; ++b)
        set.set(b);
      ++pos_;
    }
    if (pos_ >= pattern_.size()) return fail("unmatched []");
    ++pos_;
    if (complement) set.flip();
    regex_.sets_.push_back(set);
    uint32_t index = static_cast<uint32_t>(regex_.sets_.size() - 1);
    return Part{addNode(Node{Node::Kind::Set, 0, index}), true};
  }

  // --- Layout ---

  std::vector<Instruction>& program() { return regex_.program_; }
  uint32_t here() { return static_cast<uint32_t>(program().size()); }

  uint32_t add(Instruction in) {
    program().push_back(in);
    return here() - 1;
  }

  Instruction oneByteTest(const Node& node) {
    switch (node.kind) {
      case Node::Kind::Byte:
        return Instruction{Op::Byte, Op::Byte, node.byte};
      case Node::Kind::Any:
        return Instruction{Op::Any};
      default:
        return Instruction{Op::Set, Op::Byte, 0, node.index};
    }
  }

  void emit(int index) {
    const Node& node = nodes_[static_cast<size_t>(index)];
    switch (node.kind) {
      case Node::Kind::Empty:
        break;
      case Node::Kind::Byte:
      case Node::Kind::Any:
      case Node::Kind::Set:
        add(oneByteTest(node));
        break;
      case Node::Kind::Bol:
        add(Instruction{Op::Bol});
        break;
      case Node::Kind::Eol:
        add(Instruction{Op::Eol});
        break;
      case Node::Kind::Group:
        add(Instruction{Op::Save, Op::Byte, 0, 2 * node.index});
        emit(node.children.front());
        add(Instruction{Op::Save, Op::Byte, 0, 2 * node.index + 1});
        break;
      case Node::Kind::Sequence:
        emitSequence(node.children);
        break;
      case Node::Kind::Alternation:
        emitAlternation(node.children);
        break;
      case Node::Kind::Repeat:
        emitRepeat(node.repeat, node.children.front());
        break;
    }
  }

  // Runs of plain bytes become one literal.
  void emitSequence(const std::vector<int>& children) {
    size_t i = 0;
    while (i < children.size()) {
      size_t run = i;
      while (run < children.size() &&
             nodes_[static_cast<size_t>(children[run])].kind == Node::Kind::Byte) {
        ++run;
      }
      if (run - i >= 2) {
        uint32_t offset = static_cast<uint32_t>(regex_.literals_.size());
        for (size_t k = i; k < run; ++k) {
          regex_.literals_.push_back(
              static_cast<char>(nodes_[static_cast<size_t>(children[k])].byte));
        }
        add(Instruction{Op::Literal, Op::Byte, 0, offset, static_cast<uint32_t>(run - i)});
        i = run;
      } else {
        emit(children[i]);
        ++i;
      }
    }
  }

  // Each branch but the last: a split that tries it first, then a jump past the others.
  void emitAlternation(const std::vector<int>& branches) {
    std::vector<uint32_t> jumps;
    for (size_t i = 0; i < branches.size(); ++i) {
      if (i + 1 == branches.size()) {
        emit(branches[i]);
        break;
      }
      uint32_t split = add(Instruction{Op::Split});
      program()[split].index = here();
      emit(branches[i]);
      jumps.push_back(add(Instruction{Op::Jump}));
      program()[split].count = here();
    }
    for (uint32_t jump : jumps)
      program()[jump].index = here();
  }

  // Greedy: every split prefers one more turn of the operand.
  void emitRepeat(char op, int operandIndex) {
    const Node& operand = nodes_[static_cast<size_t>(operandIndex)];
    if (op != '?' && isOneByteTest(operand)) {
      Instruction test = oneByteTest(operand);
      add(Instruction{Op::Repeat, test.op, test.byte, test.index, op == '+' ? 1u : 0u});
      return;
    }
    if (op == '+') {
      uint32_t top = here();
      emit(operandIndex);
      add(Instruction{Op::Split, Op::Byte, 0, top, here() + 1});
      return;
    }
    uint32_t split = add(Instruction{Op::Split});
    program()[split].index = here();
    emit(operandIndex);
    if (op == '*') add(Instruction{Op::Jump, Op::Byte, 0, split});
    program()[split].count = here();
  }

  // What every match must start with, so that the search can skip ahead.
  void findStart() {
    size_t pc = 0;
    while (regex_.program_[pc].op == Op::Save)
      ++pc;
    const Instruction& first = regex_.program_[pc];
    regex_.anchored_ = first.op == Op::Bol;
    if (first.op == Op::Byte) regex_.firstByte_ = first.byte;
    if (first.op == Op::Literal)
      regex_.firstByte_ = static_cast<unsigned char>(regex_.literals_[first.index]);
    if (first.op == Op::Repeat && first.count > 0 && first.unit == Op::Byte)
      regex_.firstByte_ = first.byte;
  }

  std::string_view pattern_;
  Regex& regex_;
  size_t pos_ = 0;
  int groups_ = 0;
  std::vector<Node> nodes_;
  const char* error_ = nullptr;
};

std::optional<Regex> Regex::compile(std::string_view pattern, std::string* error) {
  const char* message = nullptr;
  if (pattern.data() == nullptr) {
    message = "NULL argument";
  } else {
    try {
      Regex regex;
      message = RegexCompiler(pattern, regex).run();
      if (!message) return regex;
    } catch (const std::bad_alloc&) {
      message = "out of space";
    }
  }
  if (error) *error = message;
  return std::nullopt;
}

}  // namespace zv
