#include "Reader/ModelValidation.h"

#include "Common/Raise.h"

namespace orvalo {

namespace {

/// Marks the defined ones among the required tables and calls `raise` for the IDs that are not among them.
template <class RaiseMissing>
void CheckTables(ReaderCore& core, std::map<int, int>& required, const std::map<int, std::shared_ptr<Table>>& defined,
                 const RaiseMissing& raise) {
    const StopFlag stop = core.lexer.stopFlag;
    for (const auto& entry : defined) {
        stop.Check();
        required[entry.first] = 1;
    }
    for (const auto& [id, found] : required) {
        if (found != 0) continue;
        core.subject = id;
        core.Attempt([&, missing = id] { raise(missing); });
    }
}

}  // namespace

void CheckExcitation(const Model& model) {
    if (model.actuators.empty() && model.piezos.empty()) {
        ORVALO_RAISE(Reader, ReaderMessages::ActuatorPiezoNotDefined);
    }
}

void CheckOutput(const Model& model) {
    if (model.sensors.empty() && model.dumps.empty()) ORVALO_RAISE(Reader, ReaderMessages::SensorDumpNotDefined);
}

void CheckRequiredTables(ReaderCore& core, Model& model) {
    for (const auto& piezo : model.piezos) {
        CheckTables(core, piezo->usedTables, piezo->tables, [&](int missing) {
            ORVALO_RAISE(Reader, ReaderMessages::PiezoTableMissing, piezo->shared.id, missing);
        });
    }
    CheckTables(core, model.requiredTables, model.tables,
                [](int missing) { ORVALO_RAISE(Reader, ReaderMessages::TableMissing, missing); });
}

}  // namespace orvalo
