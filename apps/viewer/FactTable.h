#pragma once

#include <QString>

#include "ScenePart.h"

namespace KOVA::Quorvex::viewer {

// In rich text, a row for each.
QString FactTable(const std::vector<ScenePart::Fact>& facts);

} // namespace KOVA::Quorvex::viewer
