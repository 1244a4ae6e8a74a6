#include <string>
#include <vector>

#include "app/fMain.h"
#include "tapi/mTAPIFunctions.h"
#include "util/Procedure.h"
#include "util/Text.h"

// The list of lines and the one that is chosen. The stored name finds its line by prefix, the list's entry exactly.
namespace fonklav {

using enum ControlId;

void fMain::SetLine() {
  Procedure(services_.diagnostics, "fMain.SetLine", {}, [&] {
    const std::int16_t id = services_.lineFunctions.GetLineID(services_.lines.TAPILine);
    if (id == -1) {
      ReportMissingLine();
    } else {
      ReportBoundLine(id);
    }
    RefreshTAPIList();
    ApplyDialButtonRule();
    // Exactly this combination and no other: a line that could place calls but has no version.
    if (Line()->NegotiatedAPIVersion() == 0 && Line()->LineSupportsVoiceCalls()) {
      reports_.CallButton(controls_[cmdWahl], Sender::SetLine);
    }
  });
}

void fMain::ReportMissingLine() {
  services_.lines.LineOKFlag = false;
  reports_.Bound(false);
  const std::string& stored = services_.lines.TAPILine;
  controls_.tmStart[2].Enabled(!stored.empty());
  const std::string caption =
      stored.empty() ? texts_.noDeviceSelected : texts_.device + " " + stored + " " + texts_.unavailable;
  controls_[lbLineIDActive].Text(caption);
  DebugLine("SetLine - ", caption);
  reports_.Line(caption);
  if (!stored.empty()) reports_.Log(caption);
}

void fMain::ReportBoundLine(std::int16_t id) {
  services_.lines.LineOKFlag = true;
  reports_.Bound(true);
  Line()->CurrentLineID(id);
  controls_.tmStart[2].Enabled(true);
  const std::string caption = WithoutNul(Line()->LineName());
  controls_[lbLineIDActive].Text(caption);
  DebugLine("SetLine - ", caption);
  reports_.Line(caption);
}

void fMain::RefreshTAPIList() {
  Procedure(services_.diagnostics, "fMain.RefreshTAPIList", {}, [&] {
    std::vector<std::string> names;
    for (const LineRecord& record : services_.lines.table) names.push_back(record.Name);
    controls_.lstTAPI.AddNew(names);
    controls_.lstTAPI.RemoveGone(names);
    if (controls_.lstTAPI.TickedCount() == 0) controls_.lstTAPI.TickAll(services_.lines.TAPILine);
  });
}

void fMain::lstTAPI_ItemCheck(std::size_t index) {
  Procedure(services_.diagnostics, "fMain.lstTAPI_ItemCheck", {index}, [&] {
    CheckList& list = controls_.lstTAPI;
    if (list.Count() == 0) return;
    if (list.TickedCount() >= 2) {
      for (std::size_t other = 0; other < list.Count(); ++other) {
        if (other != index) list.TickQuietly(other, false);
      }
    } else {
      list.TickQuietly(index, true);  // the only tick cannot be taken away
    }
    services_.lines.TAPILine = list.At(index).text;
    SetLine();
  });
}

void fMain::lstTAPI_Click(std::size_t index) {
  Procedure(services_.diagnostics, "fMain.lstTAPI_Click", {index}, [&] {
    if (index >= controls_.lstTAPI.Count()) return;
    controls_[txtLineInfo].Text("");
    const std::int16_t id = services_.lineFunctions.GetLineID(controls_.lstTAPI.At(index).text);
    if (id == -1) {
      controls_[txtLineInfo].Text(controls_[txtLineInfo].Text() + "<No Valid TAPI Line Selected>");
      return;
    }
    controls_[txtLineInfo].Text(services_.lineFunctions.GetLineInfo(*Line(), id));
    // The report has made its device the current line; the next call is to go to the ticked one.
    if (services_.lines.LineOKFlag) Line()->CurrentLineID(services_.lineFunctions.GetLineID(services_.lines.TAPILine));
  });
}

}  // namespace fonklav
