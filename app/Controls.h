#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace fonklav {

class FormView;

/// The controls of the window, in reading order, which is the tab order.
enum class ControlId {
  Frame2,
  lstTAPI,
  lbLineIDActive,
  labTAPIConfig1,
  txtSettVW,
  labTAPIConfig0,
  cmdInfo0,
  cmdInfo1,
  cmdSave,
  cmdExit,
  frmInfo0,
  txtLineInfo,
  frmInfo1,
  Label1,
  txtNumber,
  cmdWahl,
  cmdHangUp,
  txtTestStatus,
  cmdLogClear,
};
inline constexpr std::size_t kControlCount = static_cast<std::size_t>(ControlId::cmdLogClear) + 1;

/// The start timer's control array.
enum class TimerId { Start0, Start1, Start2 };
inline constexpr std::size_t kTimerCount = 3;

/// Where a changed control makes itself known: the window that shows the form, once there is one.
struct ViewSlot {
  FormView* view{nullptr};  ///< not owned
};

/// A label, button, frame or text box: the properties that the program reads and writes. A change made by the program
/// is shown by the window and notifies as a change made by the user does.
class Control {
 public:
  Control(ControlId id, ViewSlot& slot) : id_(id), slot_(slot) {}

  [[nodiscard]] ControlId Id() const { return id_; }
  /// Caption or content, UTF-8. Line breaks are CR LF; an "&" in the caption of a button, label or frame marks the
  /// access key.
  [[nodiscard]] const std::string& Text() const { return text_; }
  void Text(std::string text);
  /// Adds to the end of the text. The window is handed the addition alone, however long the text has become.
  void Append(const std::string& added);
  /// Whether it takes clicks and keys; it is grey otherwise.
  [[nodiscard]] bool Enabled() const { return enabled_; }
  void Enabled(bool enabled);
  /// Its own property. Whether somebody sees it depends on its frame and the window too: IsShown in Layout.h.
  [[nodiscard]] bool Visible() const { return visible_; }
  void Visible(bool visible);

  /// The user has edited the text: as Text, but the window already shows it.
  void Edited(std::string text);
  /// Called after each change of the text, whoever made it; not for a text that stays the same.
  void OnChange(std::function<void()> handler) { onChange_ = std::move(handler); }

 private:
  void Show();

  ControlId id_;
  ViewSlot& slot_;
  std::string text_;
  bool enabled_{true};
  bool visible_{true};
  std::function<void()> onChange_;
};

/// The list with a check box before each entry.
class CheckList {
 public:
  explicit CheckList(ViewSlot& slot) : slot_(slot) {}

  struct Entry {
    std::string text;
    bool ticked{false};
  };

  /// From the top down; indexes count from 0.
  [[nodiscard]] const std::vector<Entry>& Entries() const { return entries_; }
  [[nodiscard]] std::size_t Count() const { return entries_.size(); }
  [[nodiscard]] std::size_t TickedCount() const;
  /// Throws std::out_of_range for an index that is not there.
  [[nodiscard]] const Entry& At(std::size_t index) const { return entries_.at(index); }
  /// Adds those of the names at the end that no entry has yet. Empty names are none.
  void AddNew(const std::vector<std::string>& names);
  /// Removes entries that have none of the names, in one pass whose index moves on after a removal: the entry that
  /// takes the place of a removed one is passed over until the next call. That is deliberate.
  void RemoveGone(const std::vector<std::string>& names);
  void Clear();
  /// Ticks every entry with this text.
  void TickAll(const std::string& text);
  /// Ticks or unticks an entry, where there is one. A changed tick calls the ItemCheck handler.
  void Tick(std::size_t index, bool ticked);
  /// The same without calling anybody: for the handler itself, or two entries would tick each other for ever.
  void TickQuietly(std::size_t index, bool ticked);
  /// Called with the index of an entry whose tick has changed, by the user or by Tick.
  void OnItemCheck(std::function<void(std::size_t)> handler) { onItemCheck_ = std::move(handler); }

 private:
  void Show();

  ViewSlot& slot_;
  std::vector<Entry> entries_;
  std::function<void(std::size_t)> onItemCheck_;
};

/// A timer: ticks every `interval` milliseconds while it is enabled.
class Timer {
 public:
  Timer(TimerId id, ViewSlot& slot, unsigned interval) : id_(id), slot_(slot), interval_(interval) {}

  [[nodiscard]] TimerId Id() const { return id_; }
  /// Milliseconds from one tick to the next, and from the switching on to the first.
  [[nodiscard]] unsigned Interval() const { return interval_; }
  [[nodiscard]] bool Enabled() const { return enabled_; }
  void Enabled(bool enabled);

 private:
  TimerId id_;
  ViewSlot& slot_;
  unsigned interval_;
  bool enabled_{false};
};

/// The window as a whole. Lengths are twips (1/1440 inch); top and left are screen coordinates, width and height those
/// of the whole window with its frame and caption.
class FormWindow {
 public:
  explicit FormWindow(ViewSlot& slot) : slot_(slot) {}

  [[nodiscard]] const std::string& Caption() const { return caption_; }
  void Caption(std::string caption);
  /// Hidden is how the dialer works for the main program; it is not minimised then, and not closed.
  [[nodiscard]] bool Visible() const { return visible_; }
  void Visible(bool visible);
  /// Any number that a settings file may hold; the window keeps its title bar on a screen by itself.
  [[nodiscard]] float Top() const { return top_; }
  void Top(float top);
  [[nodiscard]] float Left() const { return left_; }
  void Left(float left);
  [[nodiscard]] float Width() const { return width_; }
  void Width(float width);
  [[nodiscard]] float Height() const { return height_; }
  void Height(float height);

  /// The user has moved or resized the window; the window already shows it.
  void Moved(float top, float left);
  void Resized(float width, float height);

 private:
  void Show();

  ViewSlot& slot_;
  std::string caption_;
  bool visible_{false};
  float top_{0};
  float left_{0};
  float width_{0};
  float height_{0};
};

/// Everything that the window shows. The program owns it; the window reads it.
class FormControls {
 public:
  FormControls();
  FormControls(const FormControls&) = delete;
  FormControls& operator=(const FormControls&) = delete;
  ~FormControls() = default;

  /// A control by its name. The list has one too, for what it has in common with the others; its entries are lstTAPI.
  [[nodiscard]] Control& operator[](ControlId id) { return controls_[static_cast<std::size_t>(id)]; }
  [[nodiscard]] const Control& operator[](ControlId id) const { return controls_[static_cast<std::size_t>(id)]; }

  /// The tooltip of the code box, the one control that needs more words than it has room for.
  [[nodiscard]] const std::string& ToolTip() const { return toolTip_; }
  void ToolTip(std::string toolTip);

  ViewSlot slot;
  FormWindow form{slot};
  CheckList lstTAPI{slot};
  std::array<Timer, kTimerCount> tmStart{Timer{TimerId::Start0, slot, 100}, Timer{TimerId::Start1, slot, 100},
                                         Timer{TimerId::Start2, slot, 3000}};

 private:
  std::array<Control, kControlCount> controls_;
  std::string toolTip_;
};

}  // namespace fonklav
