/* A driver library that lacks two functions. */
#include "platform/zavdrvr.h"

void Zav_Connect(int16_t* address, int16_t* handle) {
    *handle = *address;
}
void Zav_Init(int16_t* present, int16_t* status, int16_t* handle) {
    *status = present[0] + *handle;
}
void Zav_Disconnect(int16_t* handle) {
    (void)handle;
}
void Zav_Tx(int16_t* pod, char* command, int16_t* status, int16_t* length, int16_t* handle) {
    *status = (int16_t)(*pod + command[0] + *length + *handle);
}
void Zav_Test(int16_t* pod, int16_t* stream, int16_t* result, int16_t* handle) {
    *result = (int16_t)(*pod + *stream + *handle);
}
void Zav_String(int16_t* pod, int16_t* stream, char* buffer, int16_t* length, int16_t* status,
                int16_t* handle) {
    *status = (int16_t)(*pod + *stream + buffer[0] + *length + *handle);
}
void Zav_ValToByte(float* value, int16_t* bytes) {
    bytes[0] = (int16_t)*value;
}
void Zav_DLLVersion(char* text) {
    text[0] = 'x';
}
void Zav_DLLDelay(int16_t milliseconds) {
    (void)milliseconds;
}
