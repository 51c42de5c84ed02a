#pragma once
// printf-style formatting into std::string, for the system's own message texts ("%s", "%d", "%ld").
// Numbers that the user sees as reals never pass through here: they use the formatters of numbers.h.

#include <cstdio>
#include <string>
#include <type_traits>
#include <utility>

namespace zv {

namespace detail {
template <typename T>
decltype(auto) printfArgument(const T& value) {
  if constexpr (std::is_same_v<T, std::string>) {
    return value.c_str();
  } else {
    return value;
  }
}
}  // namespace detail

/// Formats like snprintf; std::string arguments may be passed directly for "%s".
template <typename... Args>
std::string strprintf(const char* format, const Args&... args) {
  if constexpr (sizeof...(Args) == 0) {
    return std::string(format);
  } else {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
    int length = std::snprintf(nullptr, 0, format, detail::printfArgument(args)...);
    if (length <= 0) return std::string();
    std::string out(static_cast<size_t>(length), '\0');
    std::snprintf(out.data(), out.size() + 1, format, detail::printfArgument(args)...);
#pragma GCC diagnostic pop
    return out;
  }
}

}  // namespace zv
