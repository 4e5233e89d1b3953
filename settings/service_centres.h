#pragma once

// The service-centre directory as the module uses it: the live list of the telephony library's
// main preferences (index 0 is the SIM's own centre), the operators' table it is restored
// from, and the Sending page's combo box over it.

#include "framework/ui/controls.h"

#include <QString>

#include <span>

namespace GSM {
class ServiceCentreEntry;
class ServiceCentreList;
} // namespace GSM

namespace tessaly::sms {

struct FactoryServiceCentre {
    const char16_t* name;
    const char16_t* number;
};

// The 207 operators' centres in table order.
std::span<const FactoryServiceCentre> factoryServiceCentres();

// The library's list, asked afresh on every use; null when the store is not available.
GSM::ServiceCentreList* serviceCentreList();

// Empties the list (the SIM's entry stays) and adds every factory row in order. The preferred
// index is the list's business; nothing is asked.
void restoreFactoryServiceCentres(GSM::ServiceCentreList& list);

// An entry as the Sending page shows it: the SIM's (index 0) by name, the others as
// "name (number)".
QString serviceCentreText(int index, const GSM::ServiceCentreEntry& entry);

// Fills the combo box with the list, after restoring the factory rows into an empty list, and
// selects the preferred entry. A null list leaves the combo box empty.
void fillServiceCentreCombo(ComboBox& combo, GSM::ServiceCentreList* list);

} // namespace tessaly::sms
