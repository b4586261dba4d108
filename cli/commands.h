// The commands of the program. Each routine adds one; when it was the one asked for, `status` is its exit
// status.
#pragma once

#include "options.h"

void AddCheck(CLI::App &program, int &status);
void AddFormat(CLI::App &program, int &status);
void AddDump(CLI::App &program, int &status);
void AddSegments(CLI::App &program, int &status);
void AddValue(CLI::App &program, int &status);
void AddListing(CLI::App &program, int &status);
void AddRender(CLI::App &program, int &status);
void AddLog(CLI::App &program, int &status);
void AddRecover(CLI::App &program, int &status);
void AddEdit(CLI::App &program, int &status);
