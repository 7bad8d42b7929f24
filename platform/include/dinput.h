// dinput.h stand-in for non-Windows builds: the DirectInput 8 names the
// module's keyboard entry uses, with their Windows meanings. The platform
// layer implements the keyboard device on the host's key state; a module
// that runs without a host gets a keyboard on which no key is ever down.
#pragma once

#include <windows.h>

#ifndef DIRECTINPUT_VERSION
#define DIRECTINPUT_VERSION 0x0800
#endif

struct GUID {
    uint32_t Data1;
    uint16_t Data2;
    uint16_t Data3;
    uint8_t Data4[8];
};
typedef GUID IID;
typedef const GUID& REFGUID;
typedef const IID& REFIID;

struct IUnknown;
typedef IUnknown* LPUNKNOWN;

// The data format a device is read in; only the keyboard's is offered.
struct DIDATAFORMAT {
    DWORD dwSize;      // bytes of this struct
    DWORD dwObjSize;   // bytes of one object format
    DWORD dwFlags;
    DWORD dwDataSize;  // bytes GetDeviceState fills: 256 for the keyboard
    DWORD dwNumObjs;
    void* rgodf;
};
typedef const DIDATAFORMAT* LPCDIDATAFORMAT;

// HRESULTs of the calls the module makes.
#define DI_OK S_OK
#define DIERR_INPUTLOST ((HRESULT)0x8007001E)       // the window lost the foreground
#define DIERR_NOTACQUIRED ((HRESULT)0x8007000C)     // read before Acquire
#define DIERR_OTHERAPPHASPRIO ((HRESULT)0x80070005) // Acquire while another window has the keyboard
#define DIERR_INVALIDPARAM ((HRESULT)0x80070057)
#define DIERR_NOTINITIALIZED ((HRESULT)0x80070015)

// Cooperative levels.
#define DISCL_EXCLUSIVE 0x00000001
#define DISCL_NONEXCLUSIVE 0x00000002
#define DISCL_FOREGROUND 0x00000004
#define DISCL_BACKGROUND 0x00000008

// Scan codes of the keys the module reads.
#define DIK_ESCAPE 0x01
#define DIK_1 0x02
#define DIK_2 0x03
#define DIK_3 0x04
#define DIK_4 0x05
#define DIK_5 0x06
#define DIK_6 0x07
#define DIK_7 0x08
#define DIK_8 0x09
#define DIK_9 0x0A
#define DIK_0 0x0B
#define DIK_BACK 0x0E
#define DIK_TAB 0x0F
#define DIK_Q 0x10
#define DIK_W 0x11
#define DIK_E 0x12
#define DIK_R 0x13
#define DIK_T 0x14
#define DIK_Y 0x15
#define DIK_U 0x16
#define DIK_I 0x17
#define DIK_O 0x18
#define DIK_P 0x19
#define DIK_RETURN 0x1C
#define DIK_LCONTROL 0x1D
#define DIK_A 0x1E
#define DIK_S 0x1F
#define DIK_D 0x20
#define DIK_F 0x21
#define DIK_G 0x22
#define DIK_H 0x23
#define DIK_J 0x24
#define DIK_K 0x25
#define DIK_L 0x26
#define DIK_LSHIFT 0x2A
#define DIK_Z 0x2C
#define DIK_X 0x2D
#define DIK_C 0x2E
#define DIK_V 0x2F
#define DIK_B 0x30
#define DIK_N 0x31
#define DIK_M 0x32
#define DIK_RSHIFT 0x36
#define DIK_LMENU 0x38
#define DIK_SPACE 0x39
#define DIK_NUMPADENTER 0x9C
#define DIK_RCONTROL 0x9D
#define DIK_RMENU 0xB8
#define DIK_UP 0xC8
#define DIK_PRIOR 0xC9
#define DIK_DOWN 0xD0
#define DIK_NEXT 0xD1

struct IDirectInputDevice8A {
    virtual ULONG Release() = 0;
    virtual HRESULT SetDataFormat(LPCDIDATAFORMAT format) = 0;
    virtual HRESULT SetCooperativeLevel(HWND window, DWORD flags) = 0;
    virtual HRESULT Acquire() = 0;
    virtual HRESULT Unacquire() = 0;
    virtual HRESULT GetDeviceState(DWORD size, LPVOID data) = 0;

protected:
    ~IDirectInputDevice8A() = default;
};
typedef IDirectInputDevice8A* LPDIRECTINPUTDEVICE8A;

struct IDirectInput8A {
    virtual ULONG Release() = 0;
    virtual HRESULT CreateDevice(REFGUID device, LPDIRECTINPUTDEVICE8A* out, LPUNKNOWN outer) = 0;

protected:
    ~IDirectInput8A() = default;
};
typedef IDirectInput8A* LPDIRECTINPUT8A;

extern "C" {
extern const GUID GUID_SysKeyboard;
extern const IID IID_IDirectInput8A;
extern const DIDATAFORMAT c_dfDIKeyboard;
HRESULT WINAPI DirectInput8Create(HINSTANCE instance, DWORD version, REFIID interface_id, LPVOID* out,
                                  LPUNKNOWN outer);
}
