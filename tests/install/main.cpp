#include <KesCommon/Language.h>
#include <KesProgram/model/AvaryMessage.h>
#include <iostream>
int main()
{
    lng::language = lng::Russian;
    KesDriver::KesAvary avary;
    avary.isConnectError = true;
    std::cout << KesProgram::_createAvaryMessage(avary) << '\n';
}
