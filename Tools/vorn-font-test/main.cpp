#include "Run/Session.h"

int main(int argc, char** argv) { return tool::RunProgram(argc, argv); }
