// Constants of the user interface: the messages that dialogs and user areas get.
#pragma once

// A core message, with its parts.
#define BFM_CORE_MESSAGE 0x4D63694D  // 'MciM'
#define BFM_CORE_ID 0x4D636949       // 'MciI': Int32
#define BFM_CORE_UNIQUEID 0x4D756964 // 'Muid': Int32
#define BFM_CORE_PAR1 0x4D636931     // 'Mci1': void*
#define BFM_CORE_PAR2 0x4D636932     // 'Mci2': void*

#define EVMSG_CHANGE 604 // core message: a document has changed
