/* The simulated pod network as a driver library. Besides the functions of platform/zavdrvr.h it has
 * two of its own, for those who drive it by hand.
 *
 * At its first call the library reads the scenario file that the environment variable
 * KAVORIX_NETWORK names; without one it shows the demonstration network. What is wrong with the
 * file goes to the standard error output, and there is no card then.
 */
#ifndef KAVORIX_ZAVDRVR_SIM_H
#define KAVORIX_ZAVDRVR_SIM_H

#include "platform/zavdrvr.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Starts anew with the network of a scenario file, or with the demonstration network when `file` is
 * null. Returns 0, or 1 when the file cannot be used. */
ZAV_EXPORT int16_t ZAV_CALL Zav_SimNetwork(const char* file);

/* Moves the network's time on. From the first call until the next Zav_SimNetwork it stands still in
 * between, and Zav_DLLDelay moves it too instead of waiting. */
ZAV_EXPORT void ZAV_CALL Zav_SimAdvance(int32_t milliseconds);

#ifdef __cplusplus
}
#endif

#endif
