#include "app/Layout.h"

namespace fonklav {
namespace {

using enum ControlId;
using enum ControlKind;
using enum Growth;

// The inner area is 456 x 190 pixels of 15 twips when the window is collapsed and 456 x 407 when it is expanded, with
// the widest frame and caption that a system draws. The lower panels share one place and begin where the upper part
// ends; the window hides them while it is collapsed. What a window is wider than at the start goes to list and boxes,
// what it is higher than expanded to the box of the lower panel.
constexpr std::array<LayoutRow, kControlCount> kLayout{{
    {Frame2, Frame, Frame2, 120, 75, 3240, 2685, Stretches, Stays, "TAPI Geräte ", ""},
    {lstTAPI, CheckList, Frame2, 135, 285, 2970, 1950, Stretches, Stays, "", ""},
    {lbLineIDActive, Label, Frame2, 150, 2325, 2940, 255, Stretches, Stays, "LineID", ""},
    {labTAPIConfig1, Label, labTAPIConfig1, 3540, 285, 3180, 255, Moves, Stays, "Amtskennzahl", ""},
    {txtSettVW, TextBox, txtSettVW, 3540, 555, 3180, 345, Moves, Stays, "",
     "00, 0 oder NICHTS vor nationalen Nummern, abhängig vom CAPI-Hersteller"},
    {labTAPIConfig0, Label, labTAPIConfig0, 3540, 990, 3180, 735, Moves, Stays,
     "(Wenn keine Wählregel in Systemsteuerung!)", ""},
    {cmdInfo0, Button, cmdInfo0, 3540, 1800, 1560, 375, Moves, Stays, "Geräte-&Info", ""},
    {cmdInfo1, Button, cmdInfo1, 5160, 1800, 1560, 375, Moves, Stays, "&Test", ""},
    {cmdSave, Button, cmdSave, 3540, 2385, 1560, 375, Moves, Stays, "&OK", ""},
    {cmdExit, Button, cmdExit, 5160, 2385, 1560, 375, Moves, Stays, "A&bbrechen", ""},
    {frmInfo0, Frame, frmInfo0, 120, 2880, 6600, 3120, Stretches, Stretches, "Geräte-Informationen ", ""},
    {txtLineInfo, StatusBox, frmInfo0, 150, 300, 6300, 2670, Stretches, Stretches, "", ""},
    {frmInfo1, Frame, frmInfo1, 120, 2880, 6600, 3120, Stretches, Stretches, "Test ", ""},
    {Label1, Label, frmInfo1, 150, 345, 1050, 255, Stays, Stays, "Nummer", ""},
    {txtNumber, TextBox, frmInfo1, 1230, 300, 2160, 345, Stretches, Stays, "", ""},
    {cmdWahl, Button, frmInfo1, 3480, 285, 1440, 375, Moves, Stays, "Wählen", ""},
    {cmdHangUp, Button, frmInfo1, 5010, 285, 1440, 375, Moves, Stays, "Auflegen", ""},
    {txtTestStatus, StatusBox, frmInfo1, 150, 765, 6300, 1740, Stretches, Stretches, "", ""},
    {cmdLogClear, Button, frmInfo1, 5010, 2595, 1440, 375, Moves, Moves, "clear", ""},
}};

}  // namespace

const std::array<LayoutRow, kControlCount>& Layout() { return kLayout; }

const LayoutRow& LayoutOf(ControlId id) { return kLayout.at(static_cast<std::size_t>(id)); }

}  // namespace fonklav
