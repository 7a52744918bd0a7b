#include "Reader/ModelValidation.h"

#include "Common/Raise.h"

namespace orvalo {

namespace {

/// Marks the defined ones among the required tables and returns the smallest ID that is not among them; 0 for none.
int MissingTable(std::map<int, int>& required, const std::map<int, std::shared_ptr<Table>>& defined, StopFlag stop) {
    for (const auto& entry : defined) {
        stop.Check();
        required[entry.first] = 1;
    }
    for (const auto& [id, found] : required) {
        if (found == 0) return id;
    }
    return 0;
}

}  // namespace

void CheckExcitationAndOutput(const Model& model) {
    if (model.actuators.empty() && model.piezos.empty()) {
        ORVALO_RAISE(Reader, ReaderMessages::ActuatorPiezoNotDefined);
    }
    if (model.sensors.empty() && model.dumps.empty()) ORVALO_RAISE(Reader, ReaderMessages::SensorDumpNotDefined);
}

void CheckRequiredTables(Model& model, StopFlag stop) {
    for (const auto& piezo : model.piezos) {
        const int missing = MissingTable(piezo->usedTables, piezo->tables, stop);
        if (missing != 0) ORVALO_RAISE(Reader, ReaderMessages::PiezoTableMissing, piezo->shared.id, missing);
    }
    const int missing = MissingTable(model.requiredTables, model.tables, stop);
    if (missing != 0) ORVALO_RAISE(Reader, ReaderMessages::TableMissing, missing);
}

}  // namespace orvalo
