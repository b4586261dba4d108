// A process of the test's own that is stopped at each of its system calls, to be killed there or to be told
// that the call has failed.
#pragma once

#include <functional>
#include <string>

enum class Call { Any, Open, Read, Write, Flush, Rename, Seek, Remove, Truncate };

// What happens at a call. Calls are counted, from 1, once the child has first named a file that lies in
// `directory`, or, with an empty one, between two calls of MarkTracedCalls.
struct TracedFault {
    std::string directory;
    Call call = Call::Any;
    unsigned number = 0; // 0: nothing happens, calls are counted
    int error = 0;       // what the call fails with, an `errno`; 0 to kill the child before it
    bool goesOn = false; // all later calls of the kind fail, too
};

struct TracedRun {
    unsigned calls = 0;  // of the kind, while they were counted
    bool killed = false; // by this test
    int status = 0;      // the exit status, or minus the signal that ended the child
};

// False where the machine cannot do that.
bool CanTraceCalls();
// Runs `body` in a child, which ends with status 0 behind it.
TracedRun RunTraced(const std::function<void()> &body, const TracedFault &fault);
// In the child, begins the counting and, called again, ends it.
void MarkTracedCalls();
// For a program to be started in the child: no leak check, which needs the tracing for itself.
void PrepareTracedProgram();
