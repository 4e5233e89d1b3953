#include "settings/validity_choices.h"

#include "framework/resources/resources.h"
#include "framework/ui/controls.h"

#include <algorithm>

namespace tessaly::sms {

int validityIndexForCode(int code) {
    const auto found =
        std::find_if(kValidityChoices.begin(), kValidityChoices.end(),
                     [code](const ValidityChoice& choice) { return choice.code == code; });
    return found == kValidityChoices.end() ? 0 : int(found - kValidityChoices.begin());
}

void fillValidityChoices(ComboBox& combo) {
    combo.resetContent();
    for (const ValidityChoice& choice : kValidityChoices)
        combo.addString(loadString(choice.textId));
}

} // namespace tessaly::sms
