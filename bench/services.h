#pragma once
// The figures of the toolkit, the decals and the particles, as one table.
namespace bench {

void run_services();

}  // namespace bench
