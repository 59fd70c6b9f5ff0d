#include "platform/secrets/libsecret/LibsecretKeyring.h"

/// The one thing that the program asks this library for; the caller owns the keyring.
extern "C" __attribute__((visibility("default"))) lumenfold::Keyring *lumenfoldMakeKeyring()
{
    return new lumenfold::LibsecretKeyring;
}
