// The parts of fmt that are not templates, compiled once. Debian has no static library of fmt, and header-only mode
// would compile them in every source that formats text.
#include <fmt/format-inl.h>

#include <locale>

FMT_BEGIN_NAMESPACE
namespace detail {

// Declared by the headers as instantiated elsewhere.
template FMT_API auto dragonbox::to_decimal(double x) noexcept -> dragonbox::decimal_fp<double>;
template FMT_API locale_ref::locale_ref(const std::locale& loc);
template FMT_API auto locale_ref::get<std::locale>() const -> std::locale;
template FMT_API auto thousands_sep_impl(locale_ref) -> thousands_sep_result<char>;
template FMT_API auto decimal_point_impl(locale_ref) -> char;

} // namespace detail
FMT_END_NAMESPACE
