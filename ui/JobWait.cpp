#include "ui/JobWait.h"

#include "engine/ScanState.h"

#include <windows.h>

namespace
{
// How long to wait before the next look, in milliseconds: a job whose windows have gone ends without a
// message.
constexpr DWORD pause = 10;

// Taking a message from the queue lets those sent by other threads in first; there need not be one to take.
void AnswerSentMessages()
{
    MSG ignored{};
    ::MsgWaitForMultipleObjects(0, nullptr, FALSE, pause, QS_SENDMESSAGE);
    ::PeekMessageW(&ignored, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
}
}    // namespace

void StopJobAndWait(ScanState& state)
{
    if (!state.workerThread)
        return;
    state.stopRequested = 1;
    while (state.workerThread)
        AnswerSentMessages();
    // The job may have ended just before it was asked.
    state.stopRequested = 0;
}
