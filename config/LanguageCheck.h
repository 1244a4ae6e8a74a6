#pragma once

namespace fonklav {

/// Whether this build is for translators: texts are shown with marks and missing ones are logged.
#ifdef FONKLAV_LANGUAGE_CHECK
inline constexpr bool kLanguageCheck = true;
#else
inline constexpr bool kLanguageCheck = false;
#endif

}  // namespace fonklav
