#pragma once

struct ScanState;

// For whoever a job reports to, before it goes: asks the job that still runs, if one does, to stop, and
// returns when its end has been reported. Messages that the job sends to windows of the calling thread get
// through meanwhile; the user's input waits.
void StopJobAndWait(ScanState& state);
