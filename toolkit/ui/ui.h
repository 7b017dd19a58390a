#pragma once
// The interface toolkit: retained widgets that scripts make, arrange by flexbox and hang handlers on. One example, a small tool window:
//
//   Value root = TuiMain.make();
//   Value window = TuiWindow.make(struct_of({{value, "Crowd"}, {width, 240}}));
//   Value number = TuiSlider.make(struct_of({{minimum, 0}, {maximum, 500}}));
//   number[bindVariable](oLevel1, "crowd_size");
//   number[addEvent]("change", onCrowdChanged);            // called with the widget; self is the widget, too
//   window[addContent](array_of(TuiText.make(struct_of({{value, "Enemies"}})), number));
//   root[addContent](window);
//   ... every Step: root[update]();   every Draw GUI: root[render]();
//
// Every constructor takes one optional struct whose fields become fields of the widget, after its defaults. A widget belongs to one parent
// at most; destroy() takes it and its content out of the tree for good. Lengths are GUI pixels, or texts like "50%" or "auto". Mistakes
// are reported with "TARN_UI.ERROR." or "TARN_UI.WARNING.", the widget's type and the place; they never end the game.
#include "toolkit/names.h"

namespace game {

extern const Constructor TuiMain;  // the root: fills the GUI, update() and render() once a frame each
extern const Constructor TuiBase;  // what all widgets share
extern const Constructor TuiBox;   // a plain container, a column; seen when it has a `color`
extern const Constructor TuiRow;   // a container whose content stands side by side
extern const Constructor TuiColumn;
extern const Constructor TuiPanel;   // a container on the style's panel sprite
extern const Constructor TuiWindow;  // a panel with a title bar: dragged, resized by its corner, closed; `value` is the title
extern const Constructor TuiTabs;    // pages under a row of titles: addTab(title, widget), showTab(index)
extern const Constructor TuiScroll;  // a container that shows a part of its content; wheel and bar
extern const Constructor TuiImage;   // a sprite: `value`, `image`, `color`, `alpha`, `maintain_aspect`, `rotation`; nine-slice with content
extern const Constructor TuiText;    // a text: `value`, `text_halign`, `text_valign`, `overflow`, `color`, `text_scale`
extern const Constructor TuiButton;  // raises "click"; `value` is an optional caption
extern const Constructor TuiCheckbox;     // `value` true or false; `caption`; raises "change"
extern const Constructor TuiSlider;       // `value` between `minimum` and `maximum` in steps of `step`; raises "change"
extern const Constructor TuiInput;        // a line of text: `value`, `placeholder`, `max_length`; raises "change" and "submit"
extern const Constructor TuiCombo;        // one of `options`; `value` is the index; raises "change"
extern const Constructor TuiProgressBar;  // `value` of `maximum` (100); `color`, `rounding` of the text's decimals
extern const Constructor TuiProgressRing;
extern const Constructor TuiStyle;  // sprites, fonts, colours and smallest sizes, handed down from widget to content

// Toolkit values, as scripts pass them.
namespace tui {
inline constexpr int kColumn = 0, kColumnReverse = 1, kRow = 2, kRowReverse = 3;  // flex direction
inline constexpr int kStart = 0, kCenter = 1, kEnd = 2, kStretch = 3, kBetween = 4, kAround = 5, kEvenly = 6, kAuto = 7,
                     kBaseline = 8;  // alignment
inline constexpr int kNoWrap = 0, kWrap = 1, kWrapReverse = 2;
inline constexpr int kOverflowVisible = 0, kOverflowWrap = 1, kOverflowClip = 2, kOverflowEllipsis = 3;
}  // namespace tui

}  // namespace game

// The names of fields and methods stand in a namespace of their own, so that a parameter may be called `value` or `width`.
namespace ui {
using arena::script::Variable;

// Fields of widgets
inline const Variable value{"value"}, image{"image"}, color{"color"}, alpha{"alpha"}, maintain_aspect{"maintain_aspect"},
    rotation{"rotation"};
inline const Variable width{"width"}, height{"height"}, text_halign{"text_halign"}, text_valign{"text_valign"}, text_scale{"text_scale"};
inline const Variable overflow{"overflow"}, caption{"caption"}, minimum{"minimum"}, maximum{"maximum"}, step{"step"}, rounding{"rounding"};
inline const Variable placeholder{"placeholder"}, max_length{"max_length"}, options{"options"}, content{"content"}, parent{"parent"};
inline const Variable visible_field{"visible"}, enabled{"enabled"}, style{"style"};

// Methods of all widgets
inline const Variable setSize{"setSize"}, setWidth{"setWidth"}, setHeight{"setHeight"}, setMinSize{"setMinSize"}, setMaxSize{"setMaxSize"};
inline const Variable setFullSize{"setFullSize"}, setPadding{"setPadding"}, setMargin{"setMargin"}, setBorder{"setBorder"},
    setGap{"setGap"};
inline const Variable setFlexDirection{"setFlexDirection"}, setFlexWrap{"setFlexWrap"}, setFlexGrow{"setFlexGrow"},
    setFlexShrink{"setFlexShrink"};
inline const Variable setFlexBasis{"setFlexBasis"}, setJustifyContent{"setJustifyContent"}, setAlignItems{"setAlignItems"};
inline const Variable setAlignSelf{"setAlignSelf"}, setAlignContent{"setAlignContent"}, setAspectRatio{"setAspectRatio"};
inline const Variable setPositionAbsolute{"setPositionAbsolute"}, setInset{"setInset"}, setOverflow{"setOverflow"},
    centerContent{"centerContent"};
inline const Variable addContent{"addContent"}, removeContent{"removeContent"}, destroyContent{"destroyContent"}, destroy{"destroy"};
inline const Variable bringToFront{"bringToFront"}, sendToBack{"sendToBack"}, setData{"setData"}, getData{"getData"}, addEvent{"addEvent"};
inline const Variable removeEvent{"removeEvent"}, trigger{"trigger"}, bindVariable{"bindVariable"}, setTooltip{"setTooltip"},
    setStyle{"setStyle"};
inline const Variable setMouseIgnore{"setMouseIgnore"}, setMouseIgnoreAll{"setMouseIgnoreAll"}, setVisible{"setVisible"},
    setEnabled{"setEnabled"};
inline const Variable setModal{"setModal"}, focus{"focus"}, tween{"tween"}, find{"find"}, setValue{"setValue"};
inline const Variable update{"update"}, render{"render"}, isInteracting{"isInteracting"};
inline const Variable addTab{"addTab"}, showTab{"showTab"};

// Methods of styles
inline const Variable setSprites{"setSprites"}, setSpriteProgressBar{"setSpriteProgressBar"}, setFonts{"setFonts"}, setColors{"setColors"};

}  // namespace ui

namespace game {
using namespace ui;
}
