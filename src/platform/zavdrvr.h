/* The driver library of an interface card: eleven C functions through which the station reaches its
 * pods. A site that has hardware of its own builds a shared library that exports all of them and
 * names it with --driver.
 *
 * Conventions
 * - Every integer is a signed 16-bit number passed by reference, but for the milliseconds of
 *   Zav_DLLDelay. Texts and arrays are passed by the address of their first element; a driver may
 *   overwrite a text of which it is only given the content.
 * - Pod numbers are 1..50, streams 0..3: 0 readings, 1 answers to single-channel requests,
 *   2 events, 3 texts.
 * - All calls come from one thread. A call other than Zav_Connect, Zav_Init and Zav_DLLDelay should
 *   return within a few milliseconds: while it runs, the station stands still.
 * - Before a call the station sets a status to 1, the result of Zav_Test to 0 and the handle of
 *   Zav_Connect to -1: a driver that leaves them alone fails.
 * - On 32-bit Windows the functions are __stdcall, elsewhere they have the convention of C.
 */
#ifndef KAVORIX_ZAVDRVR_H
#define KAVORIX_ZAVDRVR_H

#include <stdint.h>

#ifdef _WIN32
#define ZAV_CALL __stdcall
#define ZAV_EXPORT __declspec(dllexport)
#else
#define ZAV_CALL
#define ZAV_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Opens the card at an address; hexadecimal C800 is -14336. handle: out, below 0 when there is no
 * card at this address. The station tries C800 to DF00 in steps of 100 hexadecimal. */
ZAV_EXPORT void ZAV_CALL Zav_Connect(int16_t* address, int16_t* handle);

/* Starts the card and its pod network. present: 50 flags, in: 1 for each pod number to probe, out:
 * 1 left for each pod that answered. status: out, 0 started, else failure. */
ZAV_EXPORT void ZAV_CALL Zav_Init(int16_t* present, int16_t* status, int16_t* handle);

/* Closes the card. */
ZAV_EXPORT void ZAV_CALL Zav_Disconnect(int16_t* handle);

/* Sends a command of `length` bytes (any values, no terminator) to a pod. Numbers in it stand as
 * the four bytes that Zav_ValToByte gives. status: out, 0 sent, 1 transmit error. */
ZAV_EXPORT void ZAV_CALL Zav_Tx(int16_t* pod, char* command, int16_t* status, int16_t* length,
                                int16_t* handle);

/* Asks whether a stream holds data. result: out, 1 data waiting, 0 nothing, -1 the pod does not
 * answer. */
ZAV_EXPORT void ZAV_CALL Zav_Test(int16_t* pod, int16_t* stream, int16_t* result, int16_t* handle);

/* Reads a text reply of at most `length` bytes into the buffer; bytes that it does not fill stay as
 * they are. status: out, 0 a reply was read, 1 receive error, else nothing yet. Stream 3 gives the
 * 12-character reply to the status request "ST", whose first two characters are the type of the
 * pod; stream 2 gives records of four bytes. */
ZAV_EXPORT void ZAV_CALL Zav_String(int16_t* pod, int16_t* stream, char* buffer, int16_t* length,
                                    int16_t* status, int16_t* handle);

/* Reads numeric results. count: in, how many are asked for, out, how many there are (32 at most).
 * values, codes: out, on stream 0 one value and one result code for each channel, on stream 1 two
 * values and one code. A code of 0..128 means a valid value, above it 128 + error. status: out,
 * 0 read, 1 receive error, else nothing to read. */
ZAV_EXPORT void ZAV_CALL Zav_Numeric(int16_t* pod, int16_t* stream, int16_t* count, int16_t* status,
                                     float* values, int16_t* codes, int16_t* handle);

/* The four bytes (0..255 each) of a number in the order in which the pods take them. */
ZAV_EXPORT void ZAV_CALL Zav_ValToByte(float* value, int16_t* bytes);

/* Writes the version text, at most 34 characters. */
ZAV_EXPORT void ZAV_CALL Zav_DLLVersion(char* text);

/* Switches the pod network's power off. */
ZAV_EXPORT void ZAV_CALL Zav_PowerOff(int16_t* handle);

/* Waits; the number is passed by value. */
ZAV_EXPORT void ZAV_CALL Zav_DLLDelay(int16_t milliseconds);

#ifdef __cplusplus
}
#endif

#endif
