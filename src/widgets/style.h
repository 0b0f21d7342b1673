#pragma once

#include <QColor>
#include <QString>

class QApplication;

namespace velmara::style {

// The colours of the program, light whatever the desktop's theme is. The picture is the only
// colourful thing but for the one accent. The style sheet names them as @kWindow and so on.
inline constexpr QColor kWindow{0xf4, 0xf5, 0xf5};        ///< bars, dialogs
inline constexpr QColor kRaised{0xff, 0xff, 0xff};        ///< fields, menus
inline constexpr QColor kPressed{0xe2, 0xe4, 0xe6};       ///< hovered rows, pressed push buttons
inline constexpr QColor kBorder{0xc3, 0xc7, 0xcb};        ///< hairlines
inline constexpr QColor kText{0x26, 0x29, 0x2d};          ///< on kWindow: 13.9 to 1
inline constexpr QColor kTextDim{0x5a, 0x60, 0x67};       ///< on kWindow: 5.8 to 1
inline constexpr QColor kTextDisabled{0xa3, 0xa8, 0xad};  ///< as light as what cannot be used
inline constexpr QColor kDark{0x3f, 0x44, 0x4a};          ///< what is switched on
inline constexpr QColor kAccent{0xf6, 0xc9, 0x45};        ///< hover, progress, the default button
inline constexpr QColor kAccentDark{0xd9, 0xa9, 0x1e};    ///< the accent's edge, pressed accent
inline constexpr QColor kSurround{0x8e, 0x8e, 0x8e};      ///< around the picture: neutral mid grey
inline constexpr QColor kFocusRing{0xa0, 0x70, 0x00};     ///< on kWindow: 4.0 to 1
inline constexpr QColor kError{0xa6, 0x2b, 0x1f};         ///< what is wrong; on kWindow: 6.4 to 1
inline constexpr QColor kFocusGap{0xff, 0xff, 0xff};

/// Gives the application our palette and style sheet. Before the first window is made.
void apply(QApplication& application);

/// A style sheet whose @names of the colours above are replaced by their values.
QString resolved(const QString& sheet);

}  // namespace velmara::style
