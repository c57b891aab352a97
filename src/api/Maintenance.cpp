#include "api/Families.h"

using namespace brimlet;

uint32_t setServerIp(const uint16_t *text, uint32_t length)
{
    return g_controller->setServerIp(toString(text, length));
}

uint32_t getServerIp(uint16_t **address)
{
    if (*address)
        return BRIMLET_REFUSED;
    QString text;
    const BrimletResult result = g_controller->getServerIp(text);
    if (!text.isEmpty())
        *address = copyText(text);
    return result;
}

uint32_t clearAll(void)
{
    return g_controller->clearAll();
}

uint32_t clearAllExceptEvents(void)
{
    return g_controller->clearAllExceptEvents();
}
