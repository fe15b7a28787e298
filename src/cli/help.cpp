#include "cli/help.h"

#include <cstdio>

void printUsage() {
    puts(
        "\n"
        " OrbelStatProbe Ver.0.2 \n" // a fixed text, not this program's version
        "------------------------------------------------------------\n"
        "\n"
        " orbelstatprobe\n"
        "  Displays this usage message.\n"
        "\n"
        " orbelstatprobe -o\n"
        "  Displays the individual offsets of each member of sPwrIpmiGlobalSec1\n"
        "\n"
        " orbelstatprobe -d\n"
        "  Displays the shm data of each member of sPwrIpmiGlobalSec1 (in PWR_IPMI_GLOBAL_SEC_1)\n"
        "\n"
        " orbelstatprobe -e\n"
        "  Displays the shm data of each member of sTolmAbsPSUInfo (in PSU_INFO_SEC) for max PSUs\n"
        "\n"
        " orbelstatprobe -r\n"
        "  Displays the shm data of each member of sTolmAbsPowerReporting (in PWR_RPTG_SEC)\n"
        "\n"
        " orbelstatprobe -c\n"
        "  Displays the shm data of each member of sTolmAbsPowerConfigClr (in PWR_CFG_CLR_SEC)\n"
        "\n"
        " orbelstatprobe -u\n"
        "  Displays the shm data of each member of GPM Data (no sub-args)\n"
        "  UPM sub-options:\n"
        "    orbelstatprobe -u -t                      Check thermal data\n"
        "    orbelstatprobe -u -p -c                   Check CPU power limits data\n"
        "    orbelstatprobe -u -p -a                   Check all policy data (indices 0..15)\n"
        "    orbelstatprobe -u -p <index>              Check specific policy data (0..15)\n"
        "\n"
        " orbelstatprobe -w\n"
        "  Writes data in shm (ALL write operations now require -u)\n"
        "  Write sub-options:\n"
        "    orbelstatprobe -w -u -p <id> -s <0/1>     NEW: write only policy state for <id>\n"
        "    orbelstatprobe -w -u -c                   Clear policy data (preferred syntax)\n"
        "    orbelstatprobe -w -u -m                   NEW: interactive overwrite wizard\n"
        "    (edit CPU power limits, thermal data, policies)\n");
}

void printUpmHelp() {
    puts("========== UPM Menu ==========\n"
         "Available sub-options for `-u`:\n"
         "\n"
         "   -h  : Help information\n"
         "   -t  : Check thermal data\n"
         "   -p  : Policy-related data\n"
         "\n"
         "    Sub-options under `-p`:\n"
         "    -p -c           : Check CPU power limits data\n"
         "    -p -a           : Check all policy data (indices 0 to 15)\n"
         "    -p <index>      : Check specific policy data (index range: 0 to 15)\n"
         "================================");
}
