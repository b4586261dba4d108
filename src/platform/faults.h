// What a program does last when it dies of a fault.
#pragma once

// From now on `act` is called once when the program dies of an access to memory that is not there, of another
// fault of the processor, of an exception that nobody catches, or of an abort. Afterwards it ends as it would
// have. The act gets little stack, and must not ask for memory, which may be what is damaged. Null takes it
// back.
void CallOnFault(void (*act)());
