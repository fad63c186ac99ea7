#pragma once

#include <QIcon>
#include <QStyle>

/// The outline of one of the style's icons in the colour of the text of buttons, as the palette
/// says whenever it is painted: a style's own arrows may be black on whatever ground.
QIcon textColouredIcon(QStyle::StandardPixmap icon);
