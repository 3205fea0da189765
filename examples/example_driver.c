/* A driver library for a station with hardware of its own: one pod, number 1, which shows itself as
 * a type 7R with twenty channels. Put the calls of your hardware where read_channel() stands.
 *
 *     cc -shared -fPIC -I /usr/include/kavorix example_driver.c -o libmydriver.so
 *     kavorix --driver ./libmydriver.so
 */
#include <string.h>

#include "zavdrvr.h"

enum { THE_POD = 1, CHANNELS = 20 };

static int triggered; /* a scan record waits on stream 0 */
static int asked;     /* a status reply waits on stream 3 */

static float read_channel(int channel) {
    return 0.5F * (float)channel; /* your hardware */
}

void Zav_Connect(int16_t* address, int16_t* handle) {
    *handle = *address == -14336 ? 0 : -1; /* a card at C800 */
}

void Zav_Init(int16_t* present, int16_t* status, int16_t* handle) {
    (void)handle;
    for (int i = 0; i < 50; ++i)
        if (i != THE_POD - 1) present[i] = 0;
    *status = 0;
}

void Zav_Tx(int16_t* pod, char* command, int16_t* status, int16_t* length, int16_t* handle) {
    (void)handle;
    *status = *pod == THE_POD ? 0 : 1;
    if (*length >= 2 && memcmp(command, "TR", 2) == 0) triggered = 1;
    if (*length >= 2 && memcmp(command + *length - 2, "ST", 2) == 0) asked = 1;
}

void Zav_Test(int16_t* pod, int16_t* stream, int16_t* result, int16_t* handle) {
    (void)handle;
    *result = 0;
    if (*pod != THE_POD)
        *result = -1;
    else if (*stream == 0 && triggered)
        *result = 1;
    else if (*stream == 3 && asked)
        *result = 1;
}

void Zav_String(int16_t* pod, int16_t* stream, char* buffer, int16_t* length, int16_t* status,
                int16_t* handle) {
    (void)handle;
    *status = 2; /* nothing yet */
    if (*pod != THE_POD || *stream != 3 || !asked || *length < 12) return;
    memcpy(buffer, "7RAA 0F 1.00", 12);
    asked = 0;
    *status = 0;
}

void Zav_Numeric(int16_t* pod, int16_t* stream, int16_t* count, int16_t* status, float* values,
                 int16_t* codes, int16_t* handle) {
    (void)handle;
    *status = 2;
    if (*pod != THE_POD || *stream != 0 || !triggered) return;
    for (int i = 0; i < CHANNELS; ++i) {
        values[i] = read_channel(i + 1);
        codes[i] = 0;
    }
    *count = CHANNELS;
    triggered = 0;
    *status = 0;
}

void Zav_ValToByte(float* value, int16_t* bytes) {
    unsigned char raw[4];
    memcpy(raw, value, 4);
    for (int i = 0; i < 4; ++i) bytes[i] = raw[i];
}

void Zav_DLLVersion(char* text) {
    memcpy(text, "Example driver 1.0", 18);
}
void Zav_Disconnect(int16_t* handle) {
    (void)handle;
}
void Zav_PowerOff(int16_t* handle) {
    (void)handle;
}
void Zav_DLLDelay(int16_t milliseconds) {
    (void)milliseconds;
}
