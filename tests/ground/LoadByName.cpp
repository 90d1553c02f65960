// Loads a library by its name alone; exits with 0 when it is found.
#include <windows.h>

int main(int argc, char** argv)
{
    return argc == 2 && ::LoadLibraryA(argv[1]) ? 0 : 1;
}
