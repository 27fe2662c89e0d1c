#include "commandline.h"

int main(int nArguments, char** ppArguments)
{
    return tov::runCommandLine(std::vector<std::string>(ppArguments + 1, ppArguments + nArguments));
}
