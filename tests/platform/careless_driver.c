/* A driver library that writes beyond every buffer, spoils what it is only shown, and leaves
 * results alone that it should set. */
#include <string.h>

#include "platform/zavdrvr.h"

void Zav_Connect(int16_t* address, int16_t* handle) {
    *address = 0;
    (void)handle;
}
void Zav_Init(int16_t* present, int16_t* status, int16_t* handle) {
    for (int i = 0; i < 90; ++i) present[i] = 7;
    *handle = 99;
    (void)status;
}
void Zav_Disconnect(int16_t* handle) {
    *handle = 99;
}
void Zav_Tx(int16_t* pod, char* command, int16_t* status, int16_t* length, int16_t* handle) {
    memset(command, '!', (size_t)*length + 40);
    *pod = *length = *handle = 99;
    (void)status;
}
void Zav_Test(int16_t* pod, int16_t* stream, int16_t* result, int16_t* handle) {
    *pod = *stream = *handle = 99;
    (void)result;
}
void Zav_String(int16_t* pod, int16_t* stream, char* buffer, int16_t* length, int16_t* status,
                int16_t* handle) {
    memset(buffer + 1, '!', (size_t)*length + 40);
    *pod = *stream = *length = *handle = 99;
    (void)status;
}
void Zav_Numeric(int16_t* pod, int16_t* stream, int16_t* count, int16_t* status, float* values,
                 int16_t* codes, int16_t* handle) {
    for (int i = 0; i < 72; ++i) {
        values[i] = (float)i;
        codes[i] = (int16_t)i;
    }
    *count = 72;
    *pod = *stream = *handle = 99;
    *status = 0;
}
void Zav_ValToByte(float* value, int16_t* bytes) {
    *value = 0;
    for (int i = 0; i < 44; ++i) bytes[i] = (int16_t)(i + 300);
}
void Zav_DLLVersion(char* text) {
    memset(text, 'V', 74);
}
void Zav_PowerOff(int16_t* handle) {
    *handle = 99;
}
void Zav_DLLDelay(int16_t milliseconds) {
    (void)milliseconds;
}
