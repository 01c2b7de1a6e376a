#include "VXApplicationMain.h"

int main(int argc, char *argv[])
{
    return VXApplicationMain(argc, argv);
}
