#include "app/Layout.h"

namespace fonklav {
namespace {

using enum ControlId;
using enum ControlKind;

// The inner area is 456 x 190 pixels of 15 twips when the window is collapsed and 456 x 407 when it is expanded, with
// the widest frame and caption that a system draws. The lower panels share one place and begin where the upper part
// ends; the window hides them while it is collapsed.
constexpr std::array<LayoutRow, kControlCount> kLayout{{
    {Frame2, Frame, Frame2, 120, 75, 3420, 2685, "TAPI Geräte ", ""},
    {lstTAPI, CheckList, Frame2, 135, 285, 3150, 1950, "", ""},
    {lbLineIDActive, Label, Frame2, 150, 2325, 3120, 255, "LineID", ""},
    {labTAPIConfig1, Label, labTAPIConfig1, 3720, 210, 1620, 255, "Amtskennzahl", ""},
    {txtSettVW, TextBox, txtSettVW, 5370, 165, 1350, 345, "",
     "00, 0 oder NICHTS vor nationalen Nummern, abhängig vom CAPI-Hersteller"},
    {labTAPIConfig0, Label, labTAPIConfig0, 3720, 585, 3000, 735, "(Wenn keine Wählregel in Systemsteuerung!)", ""},
    {cmdInfo0, Button, cmdInfo0, 3720, 1815, 1470, 375, "Geräte-&Info", ""},
    {cmdInfo1, Button, cmdInfo1, 5250, 1815, 1470, 375, "&Test", ""},
    {cmdSave, Button, cmdSave, 3720, 2370, 1470, 375, "&OK", ""},
    {cmdExit, Button, cmdExit, 5250, 2370, 1470, 375, "A&bbrechen", ""},
    {frmInfo0, Frame, frmInfo0, 120, 2880, 6600, 3120, "Geräte-Informationen ", ""},
    {txtLineInfo, StatusBox, frmInfo0, 150, 300, 6300, 2670, "", ""},
    {frmInfo1, Frame, frmInfo1, 120, 2880, 6600, 3120, "Test ", ""},
    {Label1, Label, frmInfo1, 150, 345, 1050, 255, "Nummer", ""},
    {txtNumber, TextBox, frmInfo1, 1230, 300, 2160, 345, "", ""},
    {cmdWahl, Button, frmInfo1, 3480, 285, 1440, 375, "Wählen", ""},
    {cmdHangUp, Button, frmInfo1, 5010, 285, 1440, 375, "Auflegen", ""},
    {txtTestStatus, StatusBox, frmInfo1, 150, 765, 6300, 1740, "", ""},
    {cmdLogClear, Button, frmInfo1, 5010, 2595, 1440, 375, "clear", ""},
}};

}  // namespace

const std::array<LayoutRow, kControlCount>& Layout() { return kLayout; }

const LayoutRow& LayoutOf(ControlId id) { return kLayout.at(static_cast<std::size_t>(id)); }

}  // namespace fonklav
