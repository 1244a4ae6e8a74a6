#include <array>
#include <span>
#include <string_view>

#include "platform/TapiWire.h"
#include "tapi/CvbTAPILine.h"
#include "tapi/mTAPIFunctions.h"
#include "util/Procedure.h"
#include "util/Text.h"

// The device report: what a support desk asks a user to read out.
namespace fonklav {
namespace {

/// A bit and its published name. The rows stand in the order in which the report names them.
struct ModeRow {
  std::uint32_t bit;
  std::string_view name;
};

constexpr std::array kStringFormats{
    ModeRow{STRINGFORMAT_ASCII, "STRINGFORMAT_ASCII"},
    ModeRow{STRINGFORMAT_DBCS, "STRINGFORMAT_DBCS"},
    ModeRow{STRINGFORMAT_UNICODE, "STRINGFORMAT_UNICODE"},
    ModeRow{STRINGFORMAT_BINARY, "STRINGFORMAT_BINARY"},
};

constexpr std::array kBearerModes{
    ModeRow{LINEBEARERMODE_VOICE, "LINEBEARERMODE_VOICE"},
    ModeRow{LINEBEARERMODE_SPEECH, "LINEBEARERMODE_SPEECH"},
    ModeRow{LINEBEARERMODE_DATA, "LINEBEARERMODE_DATA"},
    ModeRow{LINEBEARERMODE_ALTSPEECHDATA, "LINEBEARERMODE_ALTSPEECHDATA"},
    ModeRow{LINEBEARERMODE_MULTIUSE, "LINEBEARERMODE_MULTIUSE"},
    ModeRow{LINEBEARERMODE_NONCALLSIGNALING, "LINEBEARERMODE_NONCALLSIGNALING"},
};

constexpr std::array kAddressModes{
    ModeRow{LINEADDRESSMODE_ADDRESSID, "LINEADDRESSMODE_ADDRESSID"},
    ModeRow{LINEADDRESSMODE_DIALABLEADDR, "LINEADDRESSMODE_DIALABLEADDR"},
};

constexpr std::array kMediaModes{
    ModeRow{LINEMEDIAMODE_ADSI, "LINEMEDIAMODE_ADSI"},
    ModeRow{LINEMEDIAMODE_AUTOMATEDVOICE, "LINEMEDIAMODE_AUTOMATEDVOICE"},
    ModeRow{LINEMEDIAMODE_DATAMODEM, "LINEMEDIAMODE_DATAMODEM"},
    ModeRow{LINEMEDIAMODE_DIGITALDATA, "LINEMEDIAMODE_DIGITALDATA"},
    ModeRow{LINEMEDIAMODE_G3FAX, "LINEMEDIAMODE_G3FAX"},
    ModeRow{LINEMEDIAMODE_G4FAX, "LINEMEDIAMODE_G4FAX"},
    ModeRow{LINEMEDIAMODE_INTERACTIVEVOICE, "LINEMEDIAMODE_INTERACTIVEVOICE"},
    ModeRow{LINEMEDIAMODE_MIXED, "LINEMEDIAMODE_MIXED"},
    ModeRow{LINEMEDIAMODE_TDD, "LINEMEDIAMODE_TDD"},
    ModeRow{LINEMEDIAMODE_TELETEX, "LINEMEDIAMODE_TELETEX"},
    ModeRow{LINEMEDIAMODE_TELEX, "LINEMEDIAMODE_TELEX"},
    ModeRow{LINEMEDIAMODE_UNKNOWN, "LINEMEDIAMODE_UNKNOWN"},
    ModeRow{LINEMEDIAMODE_VIDEOTEX, "LINEMEDIAMODE_VIDEOTEX"},
};

constexpr std::array kToneModes{
    ModeRow{LINETONEMODE_BEEP, "LINETONEMODE_BEEP"},         ModeRow{LINETONEMODE_BILLING, "LINETONEMODE_BILLING"},
    ModeRow{LINETONEMODE_BUSY, "LINETONEMODE_BUSY"},         ModeRow{LINETONEMODE_CUSTOM, "LINETONEMODE_CUSTOM"},
    ModeRow{LINETONEMODE_RINGBACK, "LINETONEMODE_RINGBACK"},
};

/// Collects the lines of one report.
class Report {
 public:
  void Line(std::string_view label, std::string_view value = {}) {
    text_ += label;
    text_ += value;
    text_ += kCrLf;
  }
  void Line(std::string_view label, std::int32_t value) { Line(label, std::to_string(value)); }

  /// One indented line for each set bit that has a name. Bits without a name are not reported.
  void Modes(std::span<const ModeRow> names, std::int32_t bits) {
    for (const ModeRow& row : names) {
      if ((static_cast<std::uint32_t>(bits) & row.bit) != 0) Line("\t", row.name);
    }
  }

  void Formats(std::int32_t format) {
    for (const ModeRow& row : kStringFormats) {
      if (row.bit == static_cast<std::uint32_t>(format)) Line("String Format: ", row.name);
    }
  }

  /// The report's end, which has no line break behind it.
  [[nodiscard]] std::string Finish(std::string_view label, std::int32_t value) {
    text_ += label;
    text_ += std::to_string(value);
    return WithoutNul(text_);
  }

 private:
  std::string text_;
};

std::string ReportOn(const CvbTAPILine& line) {
  Report report;
  report.Line("TAPI LINE: #", line.CurrentLineID());
  report.Line("TAPI LINE NAME: ", line.LineName());
  report.Line("TAPI PROVIDER INFO: ", line.ProviderInfo());
  report.Line("TAPI SWITCH INFO: ", line.SwitchInfo());
  report.Line("Permanent Line ID: ", line.PermanentLineID());
  report.Formats(line.StringFormat());
  report.Line("Number of addresses associated with this line: ", line.numAddresses());
  report.Line("Max data rate: ", line.maxDataRate());
  report.Line("Bearer Modes supported:");
  report.Modes(kBearerModes, line.BearerModes());
  report.Line("Address Modes supported:");
  report.Modes(kAddressModes, line.AddressModes());
  report.Line("Media Modes supported:");
  report.Modes(kMediaModes, line.mediamodes());
  const bool tones = line.GenerateToneMaxNumFreq() != 0;
  report.Line("Line Tone Generation supported: ", tones ? "True" : "False");
  if (tones) report.Modes(kToneModes, line.GenerateToneModes());
  return report.Finish("Number of terminals for this line: ", line.numTerminals());
}

}  // namespace

std::string mTAPIFunctions::GetLineInfo(CvbTAPILine& line, std::int16_t lineIndex) const {
  const ProcedureName name{"mTAPIFunctions.GetLineInfo", "GetLineInfo"};
  return Procedure(diagnostics_, name, {lineIndex}, std::string{}, [&](std::string& report) {
    if (lineIndex == -1) {
      report = "<No Valid TAPI Line Selected>";
      return;
    }
    line.CurrentLineID(lineIndex);
    report = ReportOn(line);
  });
}

}  // namespace fonklav
