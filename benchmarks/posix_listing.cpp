#include "benchmarks/listing_files.h"

namespace quorvane::benchmarks {

Text ListByDirectory(const Text& name) { return files().ListName(name); }

}  // namespace quorvane::benchmarks
