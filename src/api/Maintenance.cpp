#include "api/Families.h"

using namespace brimlet;

uint32_t setServerIp(const uint16_t *text, uint32_t length)
{
    return instance()->setServerIp(toString(text, length));
}

uint32_t getServerIp(uint16_t **address)
{
    if (*address)
        return BRIMLET_REFUSED;
    QString text;
    const BrimletResult result = instance()->getServerIp(text);
    if (!text.isEmpty())
        *address = copyText(text);
    return result;
}

uint32_t clearAll(void)
{
    return instance()->clearAll();
}

uint32_t clearAllExceptEvents(void)
{
    return instance()->clearAllExceptEvents();
}
