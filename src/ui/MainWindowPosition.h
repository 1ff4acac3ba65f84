#pragma once

class QWidget;

// positionMDI on a real window: reads the remembered position from the
// settings file and puts the window there, made to fit the screens this
// desktop has now. A maximised window is left alone. Also lowers the
// window's minimum size on a screen smaller than it.
void positionMDI(QWidget& window);
