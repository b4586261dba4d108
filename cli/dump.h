// The whole open document as one JSON object.
#pragma once

// Prints it on standard output.
void PrintDocument();
