// A program that stands in for the next version: all it does is to say that it has run.
#include "next_version.h"

int main() {
    return NextVersionExitCode;
}
