#pragma once

#include <QString>

namespace KOVA::Quorvex::viewer {

// Texts of the help menu, in rich text. The first asks the driver: with the library's context current.
QString AboutText();
QString ControlsText();

} // namespace KOVA::Quorvex::viewer
