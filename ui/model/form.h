// A window as data: its controls by name, and the rules that three events set off.
//
// A view, of any toolkit, draws a `Form` and holds no rule: it reports what the user did
// through `Type`, `Choose`, `Leave` and `Click`, and draws again what the form then says. Rules
// are handlers in the model that owns the form; `On` registers them. A rule that assigns a text or
// a box's value through `SetText` or `SetValue` raises the same event as the user does, when the
// value really changes; assigning to a control's field raises nothing. What is typed is told to the
// rules as a whole: when its field is left, or before the next thing that the user does.
//
// Texts: a control carries the number of its text in its `Tag` (a menu in its `Caption`, a tool tip
// in its `ToolTipText`), the form the number of its caption in its own `Tag`. They stay numbers
// until the language is applied. `SetProperty` reaches a control as a late-bound caller
// does: by name, and failing for a name that its type does not have.
//
// Layout: a container (a region of the form, or a frame) is a grid; each control names its cell. A
// column is as wide as its widest control needs, and what is left over goes to the columns that
// hold a control that grows; heights likewise. A window is as large as its controls need and its
// screen allows, and never leaves the screen. The order of the controls is the tab order, those of
// the foot last.
//
// Failures: 340 for a control or array element that the form does not have, 438 for a property that
// the control's type does not have.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/date.h"
#include "platform/value.h"

namespace vok {

inline constexpr int32_t kNoSuchControl = 340;
inline constexpr int32_t kNoSuchProperty = 438;

enum class ControlType {
  kLabel,
  kTextBox,
  kComboBox,
  kListBox,
  kCheckBox,
  kCommandButton,
  kFrame,
  kMenu,
  kTabStrip,
  kToolbar,
  kListView,     ///< its first column says what each row is, and stays in sight
  kProgressBar,  ///< moves while it is to be seen; it measures nothing
  kChart         ///< horizontal bars, one below the other, from one zero line
};

/// The platform's name of the type, such as "CommandButton".
const char* TypeName(ControlType type);

struct Font {
  std::string Name = "Tahoma";
  double Size = 8.25;  ///< points
  friend bool operator==(const Font&, const Font&) = default;
};

/// One of "Tabs" of a tab strip, "Buttons" of a tool bar, "ColumnHeaders" of a list view.
struct ControlItem {
  std::string Tag = {};
  std::string Caption = {};
  std::string Text = {};
  std::string ToolTipText = {};
  bool IsNumber = false;  ///< a list view's column of numbers, set flush at the end
};

/// Cells of a container's grid, counted from 0; column 0 is the first one in reading direction.
struct GridCell {
  int row = 0;
  int column = 0;
  int columns = 1;  ///< how many it spans
  int rows = 1;
};

/// Where a control stands that is in no frame.
enum class Region {
  kBody,
  /// Beside the body, with a splitter between them, while the window is wide enough for both; else
  /// below it. Both scroll together where the window is too small.
  kBeside,
  kFoot  ///< at the window's lower edge, always to be seen
};

/// One bar of a chart, or the title of the bars below it.
struct Bar {
  std::string caption;
  double value = 0;             ///< its length, in a unit that all bars of the chart have in common
  std::string value_text = {};  ///< the value as it is to be read
  bool title = false;           ///< the caption alone, on the whole line
  friend bool operator==(const Bar&, const Bar&) = default;
};

/// How the dates in texts are read and written.
struct DateTexts {
  std::function<std::optional<Date>(const std::string&)> read;
  std::function<std::string(Date)> write;
};

/// The index of a control that is in no control array.
inline constexpr int kNoIndex = -1;

/// A control by its name and, in a control array, its index from 0.
struct ControlId {
  ControlId(std::string control_name, int array_index = kNoIndex)  // NOLINT: a name is an id
      : name(std::move(control_name)), index(array_index) {}
  ControlId(const char* control_name, int array_index = kNoIndex)  // NOLINT
      : name(control_name), index(array_index) {}

  std::string name;
  int index;
  friend bool operator==(const ControlId&, const ControlId&) = default;
};

/// Values of a check box.
inline constexpr int kUnchecked = 0;
inline constexpr int kChecked = 1;
inline constexpr int kGrayed = 2;

struct Control {
  std::string Name;
  ControlType Type = ControlType::kLabel;
  int Index = kNoIndex;
  std::string Tag = {};
  std::string Caption = {};
  std::string ToolTipText = {};
  std::string Text = {};               ///< text box, combo box, list box
  std::vector<std::string> List = {};  ///< entries of a combo box or list box
  int ListIndex = -1;                  ///< the chosen entry, from 0; -1: none
  int Value = kUnchecked;              ///< check box
  bool Enabled = true;
  bool Visible = true;
  bool Default = false;        ///< the button that Enter clicks
  bool Cancel = false;         ///< the button that Escape clicks
  bool Destructive = false;    ///< a button after which something is gone, told apart by a picture
  bool Path = false;           ///< a text box's: shortened in its middle where it is too long, for
                               ///< texts, such as paths, whose ends tell most
  bool IsDate = false;         ///< a text box's: a calendar can be opened in it
  bool Locked = false;         ///< a text that can be chosen or read, not typed
  bool Error = false;          ///< drawn as wrong, in the error back colour
  bool Dimmed = false;         ///< a text that stands for nothing, drawn pale
  std::string Container = {};  ///< name of the frame or menu that it stands in; "": the form
  vok::Region Region = vok::Region::kBody;  ///< of the form, for a control in no frame
  vok::Font Font = {};
  std::vector<ControlItem> Items = {};
  std::vector<std::vector<std::string>> Rows = {};  ///< list view: texts by row and column
  std::vector<Bar> Bars = {};                       ///< chart

  GridCell Cell = {};
  int Width = 0;            ///< least width in characters of its font; 0: what its caption needs
  int Height = 1;           ///< least height in lines of its font, of a list, list view or chart
  bool Grows = false;       ///< takes the width that is left over; a label's text goes on below
  bool GrowsDown = false;   ///< takes the height that is left over
  bool AtEnd = false;       ///< as wide as it needs, at the end of its cells, not filling them
  bool Dense = false;       ///< a frame whose rows stand close together
  std::string Symbol = {};  ///< a button's: drawn in place of its caption, which is spoken
  std::string Label = {};   ///< name of the label that says what it holds and whose key leads to it
  std::string Row = {};     ///< which of several like rows it stands in, such as "3"
  std::string Shortcut = {};  ///< key of a menu entry from anywhere in the window: "F5", "Ctrl+S"

  ControlId Id() const { return {Name, Index}; }

  /// Assigns a property by its name, without regard to case: the fields above that this type has.
  void SetProperty(std::string_view name, const vok::Value& value);
  /// The items under their collection's name: "Tabs", "Buttons" or "ColumnHeaders".
  std::vector<ControlItem>& Collection(std::string_view name);
};

class Form;

/// What a screen reader calls the control: the caption of its label or its own, of a button both,
/// without access marks, and its row. "" where neither says anything.
std::string SpokenName(const Form& form, const Control& control);

/// A caption as it is read: "&Run" is "Run", "&&" is "&".
std::string WithoutAccessMark(const std::string& caption);
/// As a caption that shows the text as it is: a name may hold "&".
std::string AsCaption(const std::string& text);

/// What the mouse over the control is told: of a path all of it.
const std::string& ShownToolTip(const Control& control);

/// What a rule reacts to.
enum class FormEvent {
  kChanged,  ///< the text is another one
  kLeft,     ///< the control lost the focus
  kClicked   ///< a button or menu was clicked, a box has another value, an entry was chosen
};

class Form {
 public:
  /// Gets the index of the control's array element, `kNoIndex` outside of arrays.
  using Handler = std::function<void(int index)>;

  Form(std::string name, std::string tag) : Name(std::move(name)), Tag(std::move(tag)) {}
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  std::string Name;
  std::string Tag;
  std::string Caption;
  vok::Font Font;
  DateTexts Dates;        ///< of the fields for dates
  std::string ErrorText;  ///< how a field that is drawn as wrong is read out
  bool RightToLeft = false;
  bool Remembered = false;  ///< its size, place and splitter are kept for the person
  bool Visible = false;     ///< a modal view ends when a rule makes it false
  /// Where a rule wants the focus. A view moves it there after the event and clears this.
  std::optional<ControlId> Focus;

  /// References to controls stay valid while the form lives.
  Control& Add(Control control);
  std::deque<Control>& Controls() { return controls_; }
  const std::deque<Control>& Controls() const { return controls_; }
  Control& At(const ControlId& id);
  const Control& At(const ControlId& id) const;
  bool Has(const ControlId& id) const { return Find(id) != nullptr; }

  const std::string& Text(const ControlId& id) const { return At(id).Text; }
  bool IsChecked(const ControlId& id) const { return At(id).Value == kChecked; }

  /// Assigns a text and raises `kChanged` when it is another one.
  void SetText(const ControlId& id, const std::string& text);
  /// Assigns a box's value and raises `kClicked` when it is another one.
  void SetValue(const ControlId& id, int value);
  /// Replaces the entries; the text stays, none of them is chosen.
  void SetList(const ControlId& id, std::vector<std::string> entries);
  /// Chooses entry `position`: its text, then `kClicked`. Failure 5 for one that is not there.
  void Choose(const ControlId& id, int position);

  /// The user typed: the field has this text now, which nobody has found wrong yet. `kChanged` is
  /// raised later, see above.
  void Type(const ControlId& id, const std::string& text);
  /// The user clicks: a box changes between checked and not, then `kClicked`. Nothing happens to a
  /// control that is disabled or not to be seen.
  void Click(const ControlId& id);
  /// The control lost the focus to another one.
  void Leave(const ControlId& id);
  /// Called when all that the user did, a key typed included, has had its effect.
  std::function<void()> Acted;

  /// One handler per event and control name; a second one replaces the first.
  void On(FormEvent event, const std::string& name, Handler handler);
  /// Runs the handler, if there is one.
  void Raise(FormEvent event, const ControlId& id) const;

 private:
  struct Typed {
    ControlId id;
    std::string before;
    bool was_wrong;
  };
  const Control* Find(const ControlId& id) const;
  void TellTyped();
  void TellActed() const {
    if (Acted) Acted();
  }

  std::optional<Typed> typed_;  ///< what the rules have not been told yet
  std::deque<Control> controls_;
  std::map<std::pair<FormEvent, std::string>, Handler> handlers_;
};

}  // namespace vok
