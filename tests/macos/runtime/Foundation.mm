// SPDX-License-Identifier: MIT
// The few classes of Foundation that the layer touches, over C++ containers. Without ARC.
#include "Foundation.h"

#include "ObjectiveCRuntime.h"

#include <cstdlib>
#include <vector>

namespace {

template<typename T>
T retained(T object) {
    return static_cast<T>(static_cast<id>(objc_retain((void*)object)));
}

} // namespace

@interface NSObject (Manual)
- (id)retain;
- (void)release;
@end

@implementation NSObject

+ (instancetype)alloc {
    return objc_alloc(self);
}

+ (instancetype)new {
    return [[self alloc] init];
}

- (instancetype)init {
    return self;
}

- (void)dealloc {
    corvanta::testing::endObject((void*)self);
}

+ (Class)class {
    return self;
}

- (BOOL)isEqual:(id)other {
    return self == other;
}

- (NSUInteger)hash {
    return (NSUInteger)self >> 4;
}

- (BOOL)isKindOfClass:(Class)type {
    return corvanta_is_kind_of(self, type);
}

- (BOOL)respondsToSelector:(SEL)selector {
    return corvanta_responds(self, selector);
}

@end

@implementation NSString {
@public
    std::u16string m_text;
}

- (std::u16string)text {
    return m_text;
}

- (NSUInteger)length {
    return [self text].size();
}

- (void)getCharacters:(unichar*)buffer range:(NSRange)range {
    const std::u16string text = [self text];
    if (range.location + range.length > text.size())
        std::abort();
    for (NSUInteger index = 0; index < range.length; ++index)
        buffer[index] = text[range.location + index];
}

+ (instancetype)stringWithCharacters:(const unichar*)characters length:(NSUInteger)length {
    NSString* const text = [NSString alloc];
    text->m_text.assign(reinterpret_cast<const char16_t*>(characters), length);
    return objc_autorelease(text);
}

- (BOOL)isEqual:(id)other {
    return [other isKindOfClass:[NSString class]] && [self text] == [(NSString*)other text];
}

- (NSUInteger)hash {
    return std::hash<std::u16string>()([self text]);
}

- (id)copyWithZone:(NSZone*)zone {
    return retained(self);
}

@end

/// What the compiler makes of @"…".
@interface CorvantaConstantText : NSString
@end

@implementation CorvantaConstantText

- (std::u16string)text {
    struct Constant {
        void* isa;
        int flags;
        const char* bytes;
        long length;
    };

    constexpr int isUtf16 = 0x7D0;
    const auto* const constant = (const Constant*)self;
    const auto length = static_cast<std::size_t>(constant->length);
    if (constant->flags == isUtf16)
        return std::u16string(reinterpret_cast<const char16_t*>(constant->bytes), length);
    return std::u16string(constant->bytes, constant->bytes + length);
}

@end

@implementation NSNumber {
@public
    double m_value;
    bool m_isFlag;
}

+ (NSNumber*)numberWithBool:(BOOL)value {
    NSNumber* const number = [NSNumber alloc];
    number->m_value = value;
    number->m_isFlag = true;
    return objc_autorelease(number);
}

+ (NSNumber*)numberWithDouble:(double)value {
    NSNumber* const number = [NSNumber alloc];
    number->m_value = value;
    return objc_autorelease(number);
}

- (BOOL)boolValue {
    return m_value != 0;
}

- (double)doubleValue {
    return m_value;
}

@end

@implementation NSData {
    std::string m_bytes;
}

+ (instancetype)dataWithBytes:(const void*)bytes length:(NSUInteger)length {
    NSData* const data = [NSData alloc];
    data->m_bytes.assign(static_cast<const char*>(bytes), length);
    return objc_autorelease(data);
}

- (NSUInteger)length {
    return m_bytes.size();
}

- (const void*)bytes {
    return m_bytes.data();
}

@end

@implementation NSArray {
@public
    std::vector<id> m_members;
}

- (void)dealloc {
    for (id member : m_members)
        objc_release((void*)member);
    [super dealloc];
}

- (NSUInteger)count {
    return m_members.size();
}

- (id)firstObject {
    return m_members.empty() ? nil : m_members.front();
}

- (id)objectAtIndexedSubscript:(NSUInteger)index {
    return m_members.at(index);
}

+ (instancetype)array {
    return objc_autorelease([self alloc]);
}

+ (instancetype)arrayWithObjects:(const id*)objects count:(NSUInteger)count {
    NSArray* const array = [NSArray alloc];
    for (NSUInteger index = 0; index < count; ++index)
        array->m_members.push_back(retained(objects[index]));
    return objc_autorelease(array);
}

- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state objects:(id*)buffer count:(NSUInteger)count {
    if (state->state != 0)
        return 0;
    state->state = 1;
    state->itemsPtr = m_members.data();
    state->mutationsPtr = reinterpret_cast<unsigned long*>(self);
    return m_members.size();
}

@end

@implementation NSMutableArray

- (void)addObject:(id)object {
    m_members.push_back(retained(object));
}

@end

@implementation NSDictionary {
    std::vector<std::pair<id, id>> m_entries;
}

- (void)dealloc {
    for (const auto& [key, object] : m_entries) {
        objc_release((void*)key);
        objc_release((void*)object);
    }
    [super dealloc];
}

+ (instancetype)dictionaryWithObjects:(const id*)objects forKeys:(const id*)keys count:(NSUInteger)count {
    NSDictionary* const dictionary = [NSDictionary alloc];
    for (NSUInteger index = 0; index < count; ++index)
        dictionary->m_entries.emplace_back(retained(keys[index]), retained(objects[index]));
    return objc_autorelease(dictionary);
}

- (id)objectForKeyedSubscript:(id)key {
    for (const auto& [candidate, object] : m_entries) {
        if ([candidate isEqual:key])
            return object;
    }
    return nil;
}

@end

@implementation NSURL {
@public
    std::string m_address;
}

+ (NSURL*)fileURLWithPath:(NSString*)path {
    NSURL* const url = [NSURL alloc];
    url->m_address = "file://" + corvanta::testing::textIn(path);
    return objc_autorelease(url);
}

+ (instancetype)URLWithString:(NSString*)text {
    if (text.length == 0)
        return nil;
    NSURL* const url = [NSURL alloc];
    url->m_address = corvanta::testing::textIn(text);
    return objc_autorelease(url);
}

- (NSString*)path {
    constexpr std::size_t schemeLength = 7;
    return corvanta::testing::makeText(QString::fromStdString(m_address.substr(schemeLength)));
}

@end

@implementation NSError {
@public
    NSString* m_description;
}

- (void)dealloc {
    objc_release((void*)m_description);
    [super dealloc];
}

- (NSString*)localizedDescription {
    return m_description;
}

@end

@implementation NSProcessInfo

+ (NSProcessInfo*)processInfo {
    static NSProcessInfo* const info = [[NSProcessInfo alloc] init];
    return info;
}

- (NSOperatingSystemVersion)operatingSystemVersion {
    return {15, 4, 1};
}

@end

@implementation NSUserDefaults

+ (NSUserDefaults*)standardUserDefaults {
    static NSUserDefaults* const defaults = [[NSUserDefaults alloc] init];
    return defaults;
}

- (NSData*)dataForKey:(NSString*)key {
    const auto& stored = corvanta::testing::storedDefaults();
    const auto found = stored.find(corvanta::testing::textIn(key));
    return found != stored.end() && [found->second isKindOfClass:[NSData class]] ? (NSData*)found->second : nil;
}

- (void)setObject:(id)object forKey:(NSString*)key {
    id& slot = corvanta::testing::storedDefaults()[corvanta::testing::textIn(key)];
    objc_release((void*)slot);
    slot = retained(object);
}

@end

namespace corvanta::testing {

NSString* makeText(const QString& text) {
    return [NSString stringWithCharacters:reinterpret_cast<const unichar*>(text.utf16())
                                   length:static_cast<NSUInteger>(text.size())];
}

std::string textIn(NSString* text) {
    return text == nil ? "(nil)" : QString::fromStdU16String([text text]).toStdString();
}

NSError* makeError(const QString& description) {
    NSError* const error = [NSError alloc];
    error->m_description = retained(makeText(description));
    return objc_autorelease(error);
}

std::string addressOf(NSURL* url) {
    return url->m_address;
}

bool isFlag(NSNumber* number) {
    return number->m_isFlag;
}

std::map<std::string, id>& storedDefaults() {
    static auto& stored = *new std::map<std::string, id>;
    return stored;
}

} // namespace corvanta::testing

// What @[] and @{} refer to.
extern "C" {
id __NSArray0__;
id __NSDictionary0__;
}

__attribute__((constructor(200))) static void makeEmptyContainers() {
    __NSArray0__ = retained([NSArray arrayWithObjects:nullptr count:0]);
    __NSDictionary0__ = retained([NSDictionary dictionaryWithObjects:nullptr forKeys:nullptr count:0]);
}
