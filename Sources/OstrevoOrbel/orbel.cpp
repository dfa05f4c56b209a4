#include "Util/AppVersion.h"

#include <cstdio>

int main() {
    std::printf("orbel %s\n", orbel::appVersion().c_str());
    return 2;
}
