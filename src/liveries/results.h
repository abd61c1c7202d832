#pragma once

namespace hcr {

// What every run makes of what a livery scan has left behind. Run thread.

/// The whole loading; skipped when the tables are loaded. Throws what gf_readScannedLiveries throws.
void gf_loadScanResults();
/// Empties everything that gf_loadScanResults built, what is remembered of live aircraft with it, and clears the
/// loaded flag. No record may keep a title of the old tables.
void gf_clearLiveryTables();
/// Any thread.
bool gf_liveryTablesLoaded();

}  // namespace hcr
