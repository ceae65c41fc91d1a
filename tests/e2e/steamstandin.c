/* Stands in for the library of the Steam client: there is a user with the ticket 00 FE ED, and each call is
 * recorded in the file that STEAM_STANDIN_CALLS names. */
#include <stdbool.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

bool SteamAPI_Init(void);
void* SteamAPI_SteamUser_v021(void);
uint32_t SteamAPI_ISteamUser_GetAuthSessionTicket(void* user, void* buffer, int size, uint32_t* length);

static int theUser;

static void record(const char* text)
{
    const char* path = getenv("STEAM_STANDIN_CALLS");
    FILE* file = path ? fopen(path, "a") : NULL;
    if (!file)
        return;
    fprintf(file, "%s\n", text);
    fclose(file);
}

bool SteamAPI_Init(void)
{
    record("Init");
    return true;
}

void* SteamAPI_SteamUser_v021(void)
{
    record("SteamUser");
    return &theUser;
}

uint32_t SteamAPI_ISteamUser_GetAuthSessionTicket(void* user, void* buffer, int size, uint32_t* length)
{
    static const unsigned char ticket[] = {0x00, 0xfe, 0xed};
    char text[64];
    snprintf(text, sizeof text, "GetAuthSessionTicket %d", size);
    record(text);
    if (user != &theUser || size < (int)sizeof ticket)
        return 0;
    memcpy(buffer, ticket, sizeof ticket);
    *length = sizeof ticket;
    return 1;
}
