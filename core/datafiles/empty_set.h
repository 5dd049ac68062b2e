#pragma once

#include "core/state/data_set_paths.h"
#include "core/state/method_settings.h"

namespace zorvel {

// Removes a data set that holds nothing but its headers (a run that started no reading), so no
// empty set is left behind to be mistaken for a record of work. A set with any record, or any
// byte beyond a header, is left as it is. True when the set was removed.
bool RemoveSetWithoutRecords(const MethodSettings& method, const DataSetPaths& paths);

}  // namespace zorvel
