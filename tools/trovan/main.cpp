#include "Tool.h"

int main(int argc, char** argv) { return trovan::tool::Run(argc, argv); }
