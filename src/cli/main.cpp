// The sonalyx executable: hands the argument vector to the dispatcher and returns its status.
#include "cli/dispatch.h"

int main(int argc, char** argv) {
    return sonalyx_main(argc, argv);
}
