#include <new>

#include <Orvalo3DReader/Common/ReaderMessages.h>
#include <Orvalo3DReader/Reader/ReadModel.h>

#include "Reader/ModelReader.h"

namespace orvalo {

Model ReadModel(const std::string& path, const ReadOptions& options) {
    try {
        Model model;
        ModelReader reader(path, options.cubesOnly);
        reader.TraceCurrentCube(options.cubesRead);
        reader.Threads(options.threads);
        reader.StopOn(options.stop);
        reader.Execute(model, options.doublePrecision);
        return model;
    } catch (const std::bad_alloc&) {
        // Before there was anything to read with.
        throw ReadError({"Reader\\Reader", __LINE__, ReaderMessages::OutOfMemory.code, "Out of memory."}, {}, 0);
    }
}

}  // namespace orvalo
