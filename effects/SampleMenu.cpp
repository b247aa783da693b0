#include "effects/SampleMenu.h"

#include "compositions/model/Structure.h"

using namespace Qt::StringLiterals;

namespace tarnwell::effects {

std::vector<std::pair<QString, compositions::Value>> sampleMenuInputs()
{
    std::vector<compositions::Value> titles;
    for (const QLatin1StringView title :
         {"Undo"_L1, "Redo"_L1, "-"_L1, "Cut"_L1, "Copy"_L1, "Paste"_L1, "Paste and Match Style"_L1,
          "Delete"_L1, "Complete"_L1, "Select All"_L1, "-"_L1, "Insert"_L1, "-"_L1, "Find"_L1,
          "Spelling and Grammar"_L1, "Substitutions"_L1, "Speech"_L1, "-"_L1,
          "Special Characters..."_L1})
        titles.emplace_back(QString(title));
    const QString selected = u"SelectedMenuItem"_s;
    // The item is called after the input: no title of the menu, so nothing seems to be chosen.
    return {
        {selected, compositions::Value(selected)},
        {u"MenuItems"_s, compositions::Value(compositions::Structure::list(std::move(titles)))}};
}

} // namespace tarnwell::effects
