#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "platform/Ports.h"
#include "platform/Telephony.h"
#include "tapi/CvbTAPILine.h"
#include "tapi/Numbers.h"
#include "tapi/StructReader.h"
#include "util/Procedure.h"
#include "util/Text.h"

// From the number that a person types to the string that the line dials.
namespace fonklav {
namespace {

constexpr std::size_t kTranslateOutputSize = 1064;  ///< the fixed part (40 bytes) and room for both strings

/// The text that an output structure names by offset and size, without its terminating NUL; false when the structure
/// names none, or one that leaves it. The strings stand behind the fixed part.
bool TakeString(const StructReader& reader, const CodePage& codePage, std::uint32_t offset, std::uint32_t size,
                std::string& text) {
  if (Signed(size) < 1 || std::cmp_less(Signed(offset), sizeof(LINETRANSLATEOUTPUT))) return false;
  const std::string_view bytes = reader.Bytes(offset, size);
  if (bytes.empty()) return false;
  text = codePage.ToText(bytes.substr(0, bytes.size() - 1));
  return true;
}

}  // namespace

std::string CvbTAPILine::FoldBlanks(std::string_view number) {
  std::string folded(TrimBlanks(number));
  std::ranges::replace(folded, '/', ' ');
  std::size_t run = 0;
  std::erase_if(folded, [&run](char c) {
    run = c == ' ' ? run + 1 : 0;
    return run > 0 && run % 4 != 1;
  });
  return folded;
}

std::string CvbTAPILine::BracketAreaCode(std::string_view number) {
  const auto isBlank = [](char c) { return c == ' ' || c == '(' || c == ')'; };
  std::string bracketed = "+";
  for (const char bracket : {'(', ')'}) {
    const auto blank = static_cast<std::size_t>(std::ranges::find_if(number, isBlank) - number.begin());
    if (blank + 1 >= number.size()) return bracketed;
    bracketed.append(number.substr(0, blank)) += bracket;
    number.remove_prefix(blank + 1);
  }
  std::ranges::replace_copy_if(number, std::back_inserter(bracketed), isBlank, ' ');
  return bracketed;
}

std::string CvbTAPILine::TransformPhoneNumber(const std::string& number) {
  return Procedure(services_.diagnostics, "CvbTAPILine.TransformPhoneNumber", {number}, std::string{},
                   [&](std::string& dialable) {
    if (number.empty()) return;
    std::string prepared = FoldBlanks(number);
    if (prepared.starts_with('+')) {
      prepared = BracketAreaCode(
          std::string_view(prepared).substr(std::min(prepared.find_first_not_of('+'), prepared.size())));
      // The canonical form: it tells the dialing rules country and area, and they put in front what is dialed from
      // here.
    } else if (std::cmp_less_equal(CharacterCount(prepared), internalNrLength_)) {
      dialable = prepared;
      return;
    } else {
      prepared.insert(0, outsideLocalAccess_);
    }
    std::string translated;
    std::string displayable;
    if (GetlineTranslateAddress(prepared, translated, displayable)) dialable = translated;
  });
}

bool CvbTAPILine::GetlineTranslateAddress(const std::string& number, std::string& dialable, std::string& displayable) {
  return Procedure(services_.diagnostics, "CvbTAPILine.GetlineTranslateAddress", {number}, false, [&](bool& done) {
    std::array<std::byte, kTranslateOutputSize> buffer{};
    SetTotalSize(buffer);
    const std::string address = services_.codePage.ToBytes(number);
    const auto result = services_.telephony.lineTranslateAddress(hLineApp_, static_cast<std::uint32_t>(currentLineId_),
                                                                 static_cast<std::uint32_t>(highestApiVersion_),
                                                                 address.c_str(), 0, 0, buffer);
    const StructReader reader(buffer);
    const auto output = reader.Read<LINETRANSLATEOUTPUT>().value();
    done =
        result == 0 &&
        TakeString(reader, services_.codePage, output.dwDialableStringOffset, output.dwDialableStringSize, dialable) &&
        TakeString(reader, services_.codePage, output.dwDisplayableStringOffset, output.dwDisplayableStringSize,
                   displayable);
    if (!done) lastError_ = result;  // also a 0, where the call succeeded and its output did not
  });
}

}  // namespace fonklav
