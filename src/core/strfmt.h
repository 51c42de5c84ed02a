#pragma once
// printf-style formatting into std::string, for the system's own message texts ("%s", "%d", "%ld").
// Numbers that the user sees as reals never pass through here: they use the formatters of
// numbers.h.

#include <cstdio>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace zv {

namespace detail {
// A string view has no terminator of its own, so it travels as a std::string; the temporary
// lives until the formatting call is over.
template <typename T>
decltype(auto) ownedArgument(const T& value) {
  if constexpr (std::is_convertible_v<const T&, std::string_view> &&
                !std::is_same_v<T, std::string> && !std::is_pointer_v<std::decay_t<T>> &&
                !std::is_array_v<T>) {
    return std::string(std::string_view(value));
  } else {
    return (value);
  }
}

template <typename T>
decltype(auto) printfArgument(const T& value) {
  if constexpr (std::is_same_v<T, std::string>) {
    return value.c_str();
  } else {
    return value;
  }
}

template <typename... Args>
std::string formatOwned(const char* format, const Args&... args) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
  int length = std::snprintf(nullptr, 0, format, printfArgument(args)...);
  if (length <= 0) return std::string();
  std::string out(static_cast<size_t>(length), '\0');
  std::snprintf(out.data(), out.size() + 1, format, printfArgument(args)...);
#pragma GCC diagnostic pop
  return out;
}
}  // namespace detail

/// Formats like snprintf; std::string and std::string_view arguments may be passed directly for
/// "%s".
template <typename... Args>
std::string strprintf(const char* format, const Args&... args) {
  if constexpr (sizeof...(Args) == 0) {
    return std::string(format);
  } else {
    return detail::formatOwned(format, detail::ownedArgument(args)...);
  }
}

}  // namespace zv
