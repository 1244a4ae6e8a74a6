#pragma once

#include <array>
#include <string_view>

namespace fonklav {

/// A text of the logs' message boxes: its key in the language files and the German text that is built in.
struct LogMessageRow {
  std::string_view key;
  std::string_view defaultText;
};

inline constexpr LogMessageRow kErrorRaised{"Message_ErrorRaised", "Es ist ein Fehler aufgetreten!"};
inline constexpr LogMessageRow kSeeFile{"Message_SeeFile", "siehe Datei"};
inline constexpr LogMessageRow kTracingIsActive{"Message_TracingIsActive", "Die Ablaufverfolgung ist aktiv!"};
inline constexpr LogMessageRow kMuchDataInShortTime{"Message_MuchDataInShortTime",
                                                    "Es werden in kurzer Zeit extrem viele Daten gespeichert!"};

inline constexpr std::array kLogMessages{kErrorRaised, kSeeFile, kTracingIsActive, kMuchDataInShortTime};

}  // namespace fonklav
