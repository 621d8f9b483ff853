#include "CommandLine.h"

int main(int argc, char** argv) {
    return KOVA::Quorvex::cli::RunTool(argc, argv);
}
