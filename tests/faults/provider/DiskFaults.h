#pragma once

// Puts itself between SQLite and the system for every database that is opened from then on. May be called
// again.
void StandBeforeTheDisk();
