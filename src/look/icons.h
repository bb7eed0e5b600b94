#pragma once

#include <QIcon>

#include <functional>

class QPainter;

namespace ktr {

enum class IconName {
    Application,
    New,
    Open,
    Save,
    SaveAs,
    Print,
    PrintPreview,
    Undo,
    Redo,
    Transmit,
    Connection,
    Offline,
    Settings,
    About,
    OperationalMode,
    Warning,
    Information,
    Question,
    Error,
    Add,
    Delete,
    Search,
    Clear,
    Recent,
    Calendar
};

/// Drawn when shown, so sharp at any size and scale, in the text colour of the application's present palette;
/// the application's own icon and those of messages have their own colours.
QIcon icon(IconName name);

/// An icon drawn when shown by `draw`, on a field of 24 by 24; it looks faint where it is disabled.
QIcon drawnIcon(std::function<void(QPainter &)> draw);

} // namespace ktr
