/*
 * Tova: reference-counted values for C and C++.
 *
 * Strings, numbers, booleans, dates, data, arrays, dictionaries and URLs, with what a library needs around them:
 * formats, property lists, bundles with localized texts, preferences, text encodings, message ports and the system log.
 *
 * Ownership. A function with Create or Copy in its name returns a new reference that the caller releases with
 * TovaRelease; one with Get in its name returns a borrowed reference, valid as long as its owner is. Collections
 * retain what is put into them. Null is accepted wherever a reference is read: the answer is then null, 0 or false.
 *
 * Threads. Reference counts are atomic. Immutable values may be shared between threads; a mutable one belongs to one
 * thread at a time.
 *
 * Errors. Nothing here throws. A function that cannot do its work returns null or false.
 *
 * Text is UTF-8 at this interface and always valid; lengths are in bytes and leave the closing NUL out.
 */
#ifndef TOVA_TOVA_H
#define TOVA_TOVA_H

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

#if defined(__GNUC__)
#define TOVA_EXPORT __attribute__((visibility("default")))
#else
#define TOVA_EXPORT
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- References ------------------------------------------------------------------------------------------------ */

/* Any value of this library. */
typedef const void* TovaTypeRef;
typedef const struct TovaAllocator* TovaAllocatorRef;
typedef const struct TovaString* TovaStringRef;
typedef const struct TovaNumber* TovaNumberRef;
typedef const struct TovaBoolean* TovaBooleanRef;
typedef const struct TovaDate* TovaDateRef;
typedef const struct TovaData* TovaDataRef;
typedef const struct TovaArray* TovaArrayRef;
typedef struct TovaArray* TovaMutableArrayRef;
typedef const struct TovaDictionary* TovaDictionaryRef;
typedef struct TovaDictionary* TovaMutableDictionaryRef;
typedef const struct TovaURL* TovaURLRef;
typedef const struct TovaBundle* TovaBundleRef;
typedef const struct TovaMessagePort* TovaMessagePortRef;
typedef const struct TovaLocalMessagePort* TovaLocalMessagePortRef;

/* A count or a position; never negative where this library returns it. */
typedef long TovaIndex;

typedef enum TovaTypeID {
  kTovaTypeNone = 0, /* of null */
  kTovaTypeString,
  kTovaTypeNumber,
  kTovaTypeBoolean,
  kTovaTypeDate,
  kTovaTypeData,
  kTovaTypeArray,
  kTovaTypeDictionary,
  kTovaTypeURL,
  kTovaTypeBundle,
  kTovaTypeMessagePort,
  kTovaTypeLocalMessagePort
} TovaTypeID;

/* Adds a reference and returns the value itself. */
TOVA_EXPORT TovaTypeRef TovaRetain(TovaTypeRef value);
/* Gives a reference back; the last one destroys the value. Null is allowed. */
TOVA_EXPORT void TovaRelease(TovaTypeRef value);
TOVA_EXPORT TovaIndex TovaGetRetainCount(TovaTypeRef value);
TOVA_EXPORT TovaTypeID TovaGetTypeID(TovaTypeRef value);
/* Equality of contents: two strings of the same text, two arrays of equal elements in the same order, two
   dictionaries of the same keys with equal values in whatever order. Values of different types are never equal. */
TOVA_EXPORT bool TovaEqual(TovaTypeRef first, TovaTypeRef second);
/* Equal values have equal hashes. */
TOVA_EXPORT size_t TovaHash(TovaTypeRef value);
/* A text for people: a string's own text, a number in decimal, collections in braces. Never null for a value. */
TOVA_EXPORT TovaStringRef TovaCopyDescription(TovaTypeRef value);
/* The allocator that a value came from. There is one, the C++ run-time's. */
TOVA_EXPORT TovaAllocatorRef TovaGetAllocator(TovaTypeRef value);
TOVA_EXPORT TovaAllocatorRef TovaAllocatorGetDefault(void);

/* ---- Text encodings -------------------------------------------------------------------------------------------- */

/*
 * Numbers of text encodings. 0 to 32 are the script codes of sfnt platform 1 (0 Roman, 1 Japanese, 2 traditional
 * Chinese, 3 Korean, 4 Arabic, 5 Hebrew, 6 Greek, 7 Cyrillic, 21 Thai, 25 simplified Chinese, 29 central European),
 * as the 'name' table of the OpenType specification lists them; a script for which no converter exists decodes nothing.
 */
typedef uint32_t TovaTextEncoding;
enum {
  kTovaTextEncodingRoman = 0,
  kTovaTextEncodingUTF16BigEndian = 0x100,
  kTovaTextEncodingISOLatin1 = 0x201,
  kTovaTextEncodingDOSJapanese = 0x420,           /* code page 932, Shift-JIS */
  kTovaTextEncodingDOSSimplifiedChinese = 0x421,  /* code page 936, GBK */
  kTovaTextEncodingDOSKorean = 0x422,             /* code page 949, Wansung */
  kTovaTextEncodingDOSTraditionalChinese = 0x423, /* code page 950, Big 5 */
  kTovaTextEncodingWindowsKoreanJohab = 0x510,    /* code page 1361 */
  kTovaTextEncodingInvalid = 0xFFFFFFFFu
};

/* ---- Strings --------------------------------------------------------------------------------------------------- */

/* Null when the bytes are not valid UTF-8. */
TOVA_EXPORT TovaStringRef TovaStringCreateWithUTF8(const char* bytes, size_t length);
/* From NUL-terminated UTF-8. */
TOVA_EXPORT TovaStringRef TovaStringCreateWithCString(const char* text);
/* As TovaStringCreateWithUTF8, with U+FFFD in place of what is not valid UTF-8. */
TOVA_EXPORT TovaStringRef TovaStringCreateWithLossyUTF8(const char* bytes, size_t length);
/* Decodes strictly: null when a byte sequence has no meaning in the encoding, or the encoding has no converter. */
TOVA_EXPORT TovaStringRef TovaStringCreateWithBytes(const uint8_t* bytes, size_t length, TovaTextEncoding encoding);
/* The text, NUL-terminated; it may hold further NULs, so mind the length. */
TOVA_EXPORT const char* TovaStringGetUTF8(TovaStringRef string);
TOVA_EXPORT size_t TovaStringGetUTF8Length(TovaStringRef string);
/* Encodes the text into buffer without a closing NUL. False, with nothing useful in buffer, when the text does not fit
   into capacity bytes or has no form in the encoding. */
TOVA_EXPORT bool TovaStringGetBytes(TovaStringRef string, TovaTextEncoding encoding, uint8_t* buffer, size_t capacity,
                                    size_t* length);

typedef enum TovaFormatArgumentKind {
  kTovaFormatArgumentInteger, /* integer, two's complement in 64 bits */
  kTovaFormatArgumentReal,    /* real */
  kTovaFormatArgumentValue,   /* value: any Tova value, borrowed */
  kTovaFormatArgumentText     /* text: NUL-terminated UTF-8, borrowed */
} TovaFormatArgumentKind;

typedef struct TovaFormatArgument {
  TovaFormatArgumentKind kind;
  union {
    int64_t integer;
    double real;
    TovaTypeRef value;
    const char* text;
  } content;
} TovaFormatArgument;

/*
 * Formats with the directives of printf and "%@" (the description of a value; a string as it is). An integer is first
 * cut to the directive's C type: 32 bits for %d %i %u %x %X %o, 16 with h, 8 with hh, 64 with l, ll, z, j and t. %c
 * prints one character by its code point, %s a text, %f %e %g (and capitals) a real. "%1$d" picks an argument by
 * number. Arguments left over are ignored. Null when a directive is unknown, has no argument, or has one of the wrong
 * kind: a format that came from a translator's file cannot do harm.
 */
TOVA_EXPORT TovaStringRef TovaStringCreateWithFormat(TovaStringRef format, const TovaFormatArgument* arguments,
                                                     size_t count);

/* ---- Numbers, booleans, dates, data ---------------------------------------------------------------------------- */

TOVA_EXPORT TovaNumberRef TovaNumberCreateWithInteger(int64_t value);
TOVA_EXPORT TovaNumberRef TovaNumberCreateWithReal(double value);
TOVA_EXPORT bool TovaNumberIsReal(TovaNumberRef number);
/* A real is truncated towards zero and clamped to the range. */
TOVA_EXPORT int64_t TovaNumberGetInteger(TovaNumberRef number);
TOVA_EXPORT double TovaNumberGetReal(TovaNumberRef number);

/* The two booleans live for ever; retaining and releasing them does nothing. */
TOVA_EXPORT extern const TovaBooleanRef kTovaBooleanTrue;
TOVA_EXPORT extern const TovaBooleanRef kTovaBooleanFalse;
TOVA_EXPORT bool TovaBooleanGetValue(TovaBooleanRef boolean);

/* Seconds since 1970-01-01 00:00:00 UTC. */
typedef double TovaAbsoluteTime;
TOVA_EXPORT TovaAbsoluteTime TovaAbsoluteTimeGetCurrent(void);
TOVA_EXPORT TovaDateRef TovaDateCreate(TovaAbsoluteTime time);
TOVA_EXPORT TovaAbsoluteTime TovaDateGetAbsoluteTime(TovaDateRef date);
/* ISO 8601 in UTC, to the second: 2026-01-31T09:30:00Z. */
TOVA_EXPORT TovaStringRef TovaDateCopyISO8601(TovaDateRef date);

TOVA_EXPORT TovaDataRef TovaDataCreate(const uint8_t* bytes, size_t length);
TOVA_EXPORT const uint8_t* TovaDataGetBytes(TovaDataRef data);
TOVA_EXPORT size_t TovaDataGetLength(TovaDataRef data);

/* ---- Arrays ---------------------------------------------------------------------------------------------------- */

TOVA_EXPORT TovaMutableArrayRef TovaArrayCreateMutable(void);
/* An immutable copy; of an immutable array, the array itself with one more reference. */
TOVA_EXPORT TovaArrayRef TovaArrayCreateCopy(TovaArrayRef array);
TOVA_EXPORT TovaMutableArrayRef TovaArrayCreateMutableCopy(TovaArrayRef array);
TOVA_EXPORT TovaIndex TovaArrayGetCount(TovaArrayRef array);
/* Null for an index outside the array. */
TOVA_EXPORT TovaTypeRef TovaArrayGetValueAtIndex(TovaArrayRef array, TovaIndex index);
TOVA_EXPORT bool TovaArrayContainsValue(TovaArrayRef array, TovaTypeRef value);
/* A null value is not appended. */
TOVA_EXPORT void TovaArrayAppendValue(TovaMutableArrayRef array, TovaTypeRef value);
TOVA_EXPORT void TovaArrayAppendArray(TovaMutableArrayRef array, TovaArrayRef other);

/* ---- Dictionaries ---------------------------------------------------------------------------------------------- */

/* Keys are strings; entries keep the order in which their keys first came. */
TOVA_EXPORT TovaMutableDictionaryRef TovaDictionaryCreateMutable(void);
/* An immutable copy; of an immutable dictionary, the dictionary itself with one more reference. */
TOVA_EXPORT TovaDictionaryRef TovaDictionaryCreateCopy(TovaDictionaryRef dictionary);
TOVA_EXPORT TovaMutableDictionaryRef TovaDictionaryCreateMutableCopy(TovaDictionaryRef dictionary);
TOVA_EXPORT TovaIndex TovaDictionaryGetCount(TovaDictionaryRef dictionary);
/* Null when the key is not there. */
TOVA_EXPORT TovaTypeRef TovaDictionaryGetValue(TovaDictionaryRef dictionary, TovaStringRef key);
/* The key and the value at a place in the order of entry; null outside it. */
TOVA_EXPORT TovaStringRef TovaDictionaryGetKeyAtIndex(TovaDictionaryRef dictionary, TovaIndex index);
TOVA_EXPORT TovaTypeRef TovaDictionaryGetValueAtIndex(TovaDictionaryRef dictionary, TovaIndex index);
/* Adds the entry; leaves one that is there as it is. Null values are not stored. */
TOVA_EXPORT void TovaDictionaryAddValue(TovaMutableDictionaryRef dictionary, TovaStringRef key, TovaTypeRef value);
/* Adds the entry or replaces its value, in its old place. */
TOVA_EXPORT void TovaDictionarySetValue(TovaMutableDictionaryRef dictionary, TovaStringRef key, TovaTypeRef value);
TOVA_EXPORT void TovaDictionaryRemoveValue(TovaMutableDictionaryRef dictionary, TovaStringRef key);

/* ---- URLs ------------------------------------------------------------------------------------------------------ */

/* A file URL from a path of any bytes but NUL; a relative path is taken from the current directory. */
TOVA_EXPORT TovaURLRef TovaURLCreateWithFilePath(const char* path);
/* From text such as "file:///tmp/a%20b.ttf". Null when it is no URL with a scheme, or an escape is malformed. */
TOVA_EXPORT TovaURLRef TovaURLCreateWithString(TovaStringRef text);
/* A URL that stands for bytes in memory and carries them; whoever opens it as a file reads these. The name takes the
   place of the path, so that its ending counts; null: no name. Its text is "memory:" and the escaped name. Null without
   data. */
TOVA_EXPORT TovaURLRef TovaURLCreateWithData(TovaDataRef data, TovaStringRef name);
/* The bytes that the URL carries, borrowed from it; null unless it was made with some. */
TOVA_EXPORT TovaDataRef TovaURLGetData(TovaURLRef url);
TOVA_EXPORT TovaStringRef TovaURLCopyString(TovaURLRef url);
/* The path without its escapes, as text: bytes that are not UTF-8 appear as U+FFFD. */
TOVA_EXPORT TovaStringRef TovaURLCopyPath(TovaURLRef url);
/* The last component of that path; empty for the root. */
TOVA_EXPORT TovaStringRef TovaURLCopyLastPathComponent(TovaURLRef url);
/* The path's bytes as the file system wants them, NUL-terminated; null unless this is a file URL without a foreign
   host. */
TOVA_EXPORT const char* TovaURLGetFileSystemPath(TovaURLRef url);

/* Whether the file holds resources of any of these types (each four characters in a number, the first in its highest
   byte): in its data fork where that is a resource file, else in its resource fork. That is looked for where the file
   system offers named forks, in the sidecar "._NAME" beside the file, and in the file itself where it holds both. */
TOVA_EXPORT bool TovaURLHoldsResources(TovaURLRef url, const uint32_t* types, size_t count);

/* ---- Property lists -------------------------------------------------------------------------------------------- */

/* Reads an XML property list (PropertyList-1.0). Null when it is malformed; then error, where given, receives a
   one-line reason that the caller releases. */
TOVA_EXPORT TovaTypeRef TovaPropertyListCreateWithData(TovaDataRef data, TovaStringRef* error);
/* Reads the rest of the stream. */
TOVA_EXPORT TovaTypeRef TovaPropertyListCreateWithStream(FILE* stream, TovaStringRef* error);
/* The value as an XML property list. Null when it holds something that has no form there. Characters that XML cannot
   carry are written as U+FFFD. */
TOVA_EXPORT TovaDataRef TovaPropertyListCreateXMLData(TovaTypeRef value);
/* The element of the value alone, without the document around it, on lines indented by depth tabs: for a list that is
   written piece by piece. Null as above. */
TOVA_EXPORT TovaDataRef TovaPropertyListCreateXMLElement(TovaTypeRef value, int depth);

/* ---- Bundles --------------------------------------------------------------------------------------------------- */

/* The bundle with a reverse-domain identifier such as "veltrin.VornFontTest": the folder share/VornFontTest beside the
   loaded library libVornFontTest.so (its real place, links resolved), else beside the executable. Null without one.
   Borrowed; lives for ever. */
TOVA_EXPORT TovaBundleRef TovaBundleGetWithIdentifier(TovaStringRef identifier);
/* The host application's bundle: share/<executable name> relative to the executable. Null without one. */
TOVA_EXPORT TovaBundleRef TovaBundleGetMain(void);
/* The bundle's file <name>.<type>, null when there is none. */
TOVA_EXPORT TovaURLRef TovaBundleCopyResourceURL(TovaBundleRef bundle, TovaStringRef name, TovaStringRef type);
/* The text for key in the string table <language>/<table>.strings (an XML property list of strings) in the language of
   LC_ALL, LC_MESSAGES or LANG, else in English, else defaultText, else the key itself. The language is settled at the
   first call. In the file's name '_' stands for a '/' of the table's: OS_2.strings. Never null for a key. */
TOVA_EXPORT TovaStringRef TovaBundleCopyLocalizedString(TovaBundleRef bundle, TovaStringRef key,
                                                        TovaStringRef defaultText, TovaStringRef table);

/* ---- Preferences ----------------------------------------------------------------------------------------------- */

/* One XML property list per domain under $XDG_CONFIG_HOME (default ~/.config). Values set are kept in memory until they
   are synchronised, which replaces the file in one step. A file that is there but holds no dictionary that can be read
   counts as empty and is left as it is; such a file, and one that cannot be written, makes TovaPreferencesSynchronize
   return false and is otherwise no error. Any thread may call these. */
TOVA_EXPORT TovaTypeRef TovaPreferencesCopyValue(TovaStringRef key, TovaStringRef domain);
TOVA_EXPORT void TovaPreferencesSetValue(TovaStringRef key, TovaTypeRef value, TovaStringRef domain);
TOVA_EXPORT bool TovaPreferencesSynchronize(TovaStringRef domain);

/* ---- Message ports --------------------------------------------------------------------------------------------- */

/*
 * A message port is a name under which one process, the port's server, answers the messages of others: the Unix-domain
 * stream socket <name> in the folder $XDG_RUNTIME_DIR or, where that is no absolute path, in tova-<user id> (mode 0700)
 * under the temporary folder. A message is one frame: its id (i32) and the length of its data (u32), big-endian, then
 * the data. It is answered with one such frame of the same id. Both sides talk to processes of their own user only,
 * and take no frame with more data than kTovaMessagePortMaximumLength.
 */
enum { kTovaMessagePortMaximumLength = 16 * 1024 * 1024 };

typedef enum TovaMessagePortStatus {
  kTovaMessagePortSuccess = 0,
  kTovaMessagePortSendTimeout = -1,
  kTovaMessagePortReceiveTimeout = -2,
  kTovaMessagePortIsInvalid = -3,     /* the server has gone, or an earlier request failed */
  kTovaMessagePortTransportError = -4 /* the data is too long, or what came was no reply */
} TovaMessagePortStatus;

/* Connects to the server of a port. Null, at once, when there is none. */
TOVA_EXPORT TovaMessagePortRef TovaMessagePortCreateRemote(TovaStringRef name);
/* Sends a message and waits for its reply; time-outs are in seconds. reply, where given, receives the data of the
   reply, which the caller releases, or null where that is empty. After a failure the port is invalid: release it, and
   create another. Any thread may call this; the requests through one port wait for each other. */
TOVA_EXPORT TovaMessagePortStatus TovaMessagePortSendRequest(TovaMessagePortRef port, int32_t messageId,
                                                             TovaDataRef data, double sendTimeout,
                                                             double receiveTimeout, TovaDataRef* reply);

/* What a server does with a message: the data of the reply, handed over, or null for an empty reply. */
typedef TovaDataRef (*TovaMessagePortAnswer)(int32_t messageId, TovaDataRef data, void* context);
/* Becomes the server of a port, until the value is released. Null when the port has a server, or cannot be made. */
TOVA_EXPORT TovaLocalMessagePortRef TovaLocalMessagePortCreate(TovaStringRef name, TovaMessagePortAnswer answer,
                                                               void* context);
/* The same with a listening Unix-domain stream socket made by someone else (socket activation), which is taken over.
   Null, and nothing taken, when it is none. */
TOVA_EXPORT TovaLocalMessagePortRef TovaLocalMessagePortCreateWithSocket(int descriptor, TovaMessagePortAnswer answer,
                                                                         void* context);
/* Answers the messages of all clients, one after the other, until the descriptor stop (of a pipe or a signalfd, say) is
   readable or hung up. No client can make another wait but by the time that its answers take. False on failure. */
TOVA_EXPORT bool TovaLocalMessagePortServe(TovaLocalMessagePortRef port, int stop);

/* ---- Logs ------------------------------------------------------------------------------------------------------ */

/* Takes the lines that the library has to say beside its results. The text is borrowed for the length of the call and
   may hold any characters. Called on whatever thread has something to say. */
typedef void (*TovaLogSink)(TovaStringRef line, void* context);

/* Says a line. It goes to the sink, and by default to standard error, with control characters and marks of writing
   direction escaped (\x1b, \u202e), so that no file's name drives a terminal. */
TOVA_EXPORT void TovaLogLine(TovaStringRef line);
/* Sets the process's sink, to be called with the context; null: the default one. */
TOVA_EXPORT void TovaLogSetSink(TovaLogSink sink, void* context);

/* Writes a line to the system log at error level. */
TOVA_EXPORT void TovaLogError(TovaStringRef text);
/* Sends such lines to the sink instead, one at a time; null: to the system log again. Once this returns, the former
   sink is called no more. A sink must not come back here. */
TOVA_EXPORT void TovaLogErrorSetSink(TovaLogSink sink, void* context);

#ifdef __cplusplus
}
#endif

#endif
