// The state of the controls of a form: plain values, no behaviour, no toolkit. A user interface
// shows the controls and calls the handlers of their events, which are in other folders; a test
// reads the controls without a screen.
//
// A Watched value notifies its form's ChangeNotice of every change, so that a user interface need
// not poll the controls.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace morvex {

// Counts the changes of one form. `on_change`, when set, is called after each change, in the middle
// of a handler. One handler may cause a million changes, so `on_change` must only note that a
// repaint is due. It must not throw.
class ChangeNotice {
 public:
  void Changed() {
    ++revision_;
    if (on_change) on_change();
  }
  std::uint64_t revision() const { return revision_; }

  std::function<void()> on_change;

 private:
  std::uint64_t revision_ = 0;
};

// A value that notifies its form when it changes.
template <class T>
class Watched {
 public:
  explicit Watched(ChangeNotice& notice, T initial = T{})
      : notice_(&notice), value_(std::move(initial)) {}
  Watched(const Watched&) = delete;
  Watched& operator=(const Watched&) = delete;

  Watched& operator=(T value) {
    if (!(value_ == value)) {
      value_ = std::move(value);
      notice_->Changed();
    }
    return *this;
  }
  operator const T&() const { return value_; }  // NOLINT(google-explicit-constructor)
  const T& get() const { return value_; }

 private:
  ChangeNotice* notice_;
  T value_;
};

// 0x00BBGGRR, or one of the system's own colours with the highest bit set.
enum class Colour : std::uint32_t {
  kBlack = 0,
  kRed = 255,
  kSystemHighlight = 0x8000000D,
};

enum class MousePointer { kDefault, kHourglass, kCustom };

// Position and size in twips, 1440 to the inch, from the form's upper left corner.
struct Box {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  bool operator==(const Box&) const = default;
};

// What every control has. `tab_index` orders the controls of a form for the Tab key, from 0; -1 if
// Tab passes the control over.
struct Control {
  Control(ChangeNotice& notice, Box where, int tab)
      : tool_tip(notice),
        enabled(notice, true),
        visible(notice, true),
        colour(notice, Colour::kBlack),
        tab_index(notice, tab),
        box(notice, where) {}

  Watched<std::string> tool_tip;
  Watched<bool> enabled;
  Watched<bool> visible;
  Watched<Colour> colour;
  Watched<int> tab_index;
  Watched<Box> box;
};

struct Label : Control {
  Label(ChangeNotice& notice, Box where, std::string text, std::string font_name = "")
      : Control(notice, where, -1), caption(notice, std::move(text)), font(std::move(font_name)) {}

  Watched<std::string> caption;  // CR LF separates its lines
  std::string font;              // empty: the form's own
};

struct Button : Control {
  Button(ChangeNotice& notice, Box where, int tab, std::string text, std::string hint = "")
      : Control(notice, where, tab), caption(notice, std::move(text)), font("MS Sans Serif") {
    tool_tip = std::move(hint);
  }

  Watched<std::string> caption;
  std::string font;
};

// A box for one line of text; the user interface keeps CR and LF out. The box's handler for changes
// puts typed text into `text`; if the box has no such handler, the user interface does.
struct TextBox : Control {
  TextBox(ChangeNotice& notice, Box where, int tab) : Control(notice, where, tab), text(notice) {}

  Watched<std::string> text;
};

// A picture, as decoration or as a button.
struct Picture : Control {
  Picture(ChangeNotice& notice, Box where, int tab)
      : Control(notice, where, tab), mouse_pointer(notice, MousePointer::kDefault) {}

  Watched<MousePointer> mouse_pointer;
  int cursor_resource = 0;  // number of the cursor shown with MousePointer::kCustom
};

// Its value is 0 (off), 1 (on) or 2 (greyed).
struct CheckBox : Control {
  CheckBox(ChangeNotice& notice, Box where, int tab, std::string text)
      : Control(notice, where, tab), caption(notice, std::move(text)), value_(notice, 0) {}

  Watched<std::string> caption;

  int value() const { return value_; }
  // Returns false and changes nothing if `value` is not 0, 1 or 2.
  bool SetValue(int value) {
    if (value < 0 || value > 2) return false;
    value_ = value;
    return true;
  }

 private:
  Watched<int> value_;
};

struct ListEntry {
  std::string text;
  bool selected = false;
  bool operator==(const ListEntry&) const = default;
};

// A list in which any number of entries can be selected. `current` is the index of the entry with
// the focus mark, -1 for none.
struct ListBox : Control {
  ListBox(ChangeNotice& notice, Box where, int tab)
      : Control(notice, where, tab), entries(notice), current(notice, -1) {}

  Watched<std::vector<ListEntry>> entries;
  Watched<int> current;
};

// A value outside the range is moved to the nearer end of the range, so SetValue never fails.
struct ScrollBar : Control {
  ScrollBar(ChangeNotice& notice, Box where, int tab)
      : Control(notice, where, tab), minimum_(notice, 0), maximum_(notice, 0), value_(notice, 0) {}

  std::int64_t minimum() const { return minimum_; }
  std::int64_t maximum() const { return maximum_; }
  std::int64_t value() const { return value_; }
  void SetRange(std::int64_t minimum, std::int64_t maximum) {
    minimum_ = minimum;
    maximum_ = std::max(minimum, maximum);
    SetValue(value_);
  }
  void SetValue(std::int64_t value) { value_ = std::clamp(value, minimum_.get(), maximum_.get()); }

 private:
  Watched<std::int64_t> minimum_;
  Watched<std::int64_t> maximum_;
  Watched<std::int64_t> value_;
};

// Runs from 0 to `maximum`. A value outside this range is moved to the nearer end of the range.
struct ProgressBar : Control {
  ProgressBar(ChangeNotice& notice, Box where)
      : Control(notice, where, -1), maximum_(notice, 0), value_(notice, 0) {}

  std::int64_t maximum() const { return maximum_; }
  std::int64_t value() const { return value_; }
  void SetMaximum(std::int64_t maximum) {
    maximum_ = std::max<std::int64_t>(maximum, 0);
    SetValue(value_);
  }
  void SetValue(std::int64_t value) { value_ = std::clamp<std::int64_t>(value, 0, maximum_); }

 private:
  Watched<std::int64_t> maximum_;
  Watched<std::int64_t> value_;
};

// Ticks once, `interval_ms` milliseconds after it was enabled.
struct Timer {
  bool enabled = false;
  int interval_ms = 0;
};

// A tree of folders, shown instead of a path box while the user chooses a folder.
struct FolderTree : Control {
  FolderTree(ChangeNotice& notice, Box where, int tab)
      : Control(notice, where, tab), selected_folder(notice) {
    visible = false;
  }

  Watched<std::string> selected_folder;
  std::string last_folder_event;  // path of the folder that the last event was about
};

// A drawn line, in twips.
struct Line {
  int x1 = 0;
  int y1 = 0;
  int x2 = 0;
  int y2 = 0;
};

// The control to which a handler wants the input focus to move. The user interface moves the focus
// when requests() has grown, and otherwise leaves the focus where the user put it.
class FocusRequest {
 public:
  explicit FocusRequest(ChangeNotice& notice) : notice_(&notice) {}
  FocusRequest& operator=(const Control* control) {
    control_ = control;
    ++requests_;
    notice_->Changed();
    return *this;
  }
  const Control* get() const { return control_; }
  std::uint64_t requests() const { return requests_; }

 private:
  ChangeNotice* notice_;
  const Control* control_ = nullptr;
  std::uint64_t requests_ = 0;
};

// The state of a window. `width` and `height` are those of the part inside the window's frame, in
// twips.
struct Form {
  Form(std::string title, int inner_width, int inner_height)
      : loaded(changes, false),
        caption(changes, std::move(title)),
        visible(changes, false),
        width(changes, inner_width),
        height(changes, inner_height),
        mouse_pointer(changes, MousePointer::kDefault),
        focus(changes) {}
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  ChangeNotice changes;
  Watched<bool> loaded;
  Watched<std::string> caption;
  Watched<bool> visible;
  Watched<int> width;
  Watched<int> height;
  Watched<MousePointer> mouse_pointer;
  FocusRequest focus;
};

}  // namespace morvex
