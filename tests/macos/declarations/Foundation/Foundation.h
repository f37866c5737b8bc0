// SPDX-License-Identifier: MIT
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>

typedef bool BOOL;
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr
typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef unsigned short unichar;
typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;
typedef struct _NSZone NSZone;

typedef struct _NSRange {
    NSUInteger location;
    NSUInteger length;
} NSRange;

typedef struct {
    NSInteger majorVersion;
    NSInteger minorVersion;
    NSInteger patchVersion;
} NSOperatingSystemVersion;

static inline NSRange NSMakeRange(NSUInteger loc, NSUInteger len) {
    NSRange r = {loc, len};
    return r;
}

static inline NSPoint NSMakePoint(CGFloat x, CGFloat y) {
    NSPoint p = {x, y};
    return p;
}

static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat w, CGFloat h) {
    NSRect r = {{x, y}, {w, h}};
    return r;
}

typedef struct {
    unsigned long state;
    id __unsafe_unretained _Nullable* _Nullable itemsPtr;
    unsigned long* _Nullable mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;

SDK_NONNULL_BEGIN
@class NSString, NSDictionary<K, V>, NSArray<T>;
@protocol NSObject
- (BOOL)isEqual:(nullable id)object;
- (BOOL)isKindOfClass:(Class)aClass;
- (BOOL)respondsToSelector:(SEL)aSelector;
@property(readonly) NSUInteger hash;
@end
@protocol NSCopying
- (id)copyWithZone:(nullable NSZone*)zone;
@end
@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)len;
@end
__attribute__((objc_root_class))
@interface NSObject<NSObject> {
    Class isa;
}
+ (instancetype)alloc;
+ (instancetype)new;
- (instancetype)init;
- (void)dealloc;
+ (Class)class;
@end
@interface NSString : NSObject <NSCopying>
@property(readonly) NSUInteger length;
- (void)getCharacters:(unichar*)buffer range:(NSRange)range;
+ (instancetype)stringWithCharacters:(const unichar*)characters length:(NSUInteger)length;
@end
@interface NSNumber : NSObject
@property(readonly) BOOL boolValue;
@property(readonly) double doubleValue;
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithDouble:(double)value;
@end
@interface NSData : NSObject
@property(readonly) NSUInteger length;
@property(readonly) const void* bytes;
+ (instancetype)dataWithBytes:(nullable const void*)bytes length:(NSUInteger)length;
@end
@interface NSArray<__covariant ObjectType> : NSObject <NSFastEnumeration>
@property(readonly) NSUInteger count;
@property(nullable, nonatomic, readonly) ObjectType firstObject;
- (ObjectType)objectAtIndexedSubscript:(NSUInteger)idx;
+ (instancetype)array;
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull[_Nullable])objects count:(NSUInteger)cnt;
@end
@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
- (void)addObject:(ObjectType)anObject;
@end
@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject
- (nullable ObjectType)objectForKeyedSubscript:(KeyType)key;
+ (instancetype)dictionaryWithObjects:(const ObjectType _Nonnull[_Nullable])objects
                              forKeys:(const KeyType<NSCopying> _Nonnull[_Nullable])keys
                                count:(NSUInteger)cnt;
@end
@interface NSURL : NSObject
+ (NSURL*)fileURLWithPath:(NSString*)path;
+ (nullable instancetype)URLWithString:(NSString*)URLString;
@property(nullable, readonly, copy) NSString* path;
@end
@interface NSError : NSObject
@property(readonly, copy) NSString* localizedDescription;
@end
@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
@property(readonly) NSOperatingSystemVersion operatingSystemVersion SDK_AVAILABLE(10.10);
@end
@interface NSUserDefaults : NSObject
@property(class, readonly, strong) NSUserDefaults* standardUserDefaults;
- (nullable NSData*)dataForKey:(NSString*)defaultName;
- (void)setObject:(nullable id)value forKey:(NSString*)defaultName;
@end
SDK_NONNULL_END
