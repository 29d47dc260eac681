#include "diskusage/Displayer.h"

namespace brightsweep {

void Displayer::StatusMessage(const char *, const char *) {}
void Displayer::DrawSector(double, double, double, double, bool) {}

} // namespace brightsweep
