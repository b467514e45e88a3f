// From: developer.apple.com, "CFDictionary". Binding: xamarin-macios src/CoreFoundation/CFDictionary.cs.
#pragma once

typedef const struct __CFDictionary* CFDictionaryRef;
