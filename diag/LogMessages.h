#pragma once

#include <array>

#include "config/modLanguage.h"

namespace fonklav {

/// The texts of the logs' message boxes.
inline constexpr TextKey kErrorRaised{"Message_ErrorRaised", "Es ist ein Fehler aufgetreten!"};
inline constexpr TextKey kSeeFile{"Message_SeeFile", "siehe Datei"};
inline constexpr TextKey kTracingIsActive{"Message_TracingIsActive", "Die Ablaufverfolgung ist aktiv!"};
inline constexpr TextKey kMuchDataInShortTime{"Message_MuchDataInShortTime",
                                              "Es werden in kurzer Zeit extrem viele Daten gespeichert!"};

inline constexpr std::array kLogMessages{kErrorRaised, kSeeFile, kTracingIsActive, kMuchDataInShortTime};

}  // namespace fonklav
