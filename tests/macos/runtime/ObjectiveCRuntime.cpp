// SPDX-License-Identifier: MIT
// An Objective-C runtime for tests on x86-64 Linux: just enough of the ABI that Clang emits for macOS to run the
// classes, messages, blocks, weak references and ARC of the layer and of the doubles. It is stricter than a real one:
// an over-release and a message to a dead object abort, and living objects are counted.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace {

using Selector = const char*;

struct Method {
    Selector selector;
    const char* types;
    void* implementation;
};

struct MethodList {
    std::uint32_t entrySize;
    std::uint32_t count;
    Method first[1];
};

struct InstanceVariable {
    long* offset;
    const char* name;
    const char* type;
    std::uint32_t alignment;
    std::uint32_t size;
};

struct InstanceVariableList {
    std::uint32_t entrySize;
    std::uint32_t count;
    InstanceVariable first[1];
};

struct ClassData {
    std::uint32_t flags;
    std::uint32_t instanceStart;
    std::uint32_t instanceSize;
    std::uint32_t reserved;
    const std::uint8_t* layout;
    const char* name;
    MethodList* methods;
    void* protocols;
    InstanceVariableList* variables;
    const std::uint8_t* weakLayout;
    void* properties;
};

constexpr std::uint32_t isMetaClass = 1;

struct ClassObject {
    ClassObject* isa;
    ClassObject* super;
    void* cache;
    void* table;
    ClassData* data;
};

struct Object {
    ClassObject* isa;
};

struct Header {
    long references;
    long magic;
};

constexpr long magicNumber = 0x4d494e49;
constexpr long ending = -1;
constexpr long ended = -2;

// After the published ABI of blocks.
struct BlockDescriptor {
    unsigned long reserved;
    unsigned long size;
    void (*copy)(void*, const void*);
    void (*dispose)(const void*);
};

struct Block {
    void** isa;
    int flags;
    int reserved;
    void* invoke;
    BlockDescriptor* descriptor;
};

constexpr int blockHasCopy = 1 << 25;
constexpr int blockIsGlobal = 1 << 28;
constexpr int fieldIsBlock = 7;
constexpr int fieldIsObject = 3;

using MethodTable = std::unordered_map<Selector, void*>;

// Never destroyed: objects may outlive every static variable.
auto& interned() {
    static auto& table = *new std::unordered_map<std::string_view, Selector>;
    return table;
}

auto& methodTables() {
    static auto& tables = *new std::unordered_map<ClassObject*, MethodTable>;
    return tables;
}

auto& living() {
    static auto& counts = *new std::map<std::string, long>;
    return counts;
}

auto& weakReferences() {
    static auto& references = *new std::unordered_map<Object*, std::set<Object**>>;
    return references;
}

auto& pool() {
    static auto& objects = *new std::vector<Object*>;
    return objects;
}

/// Dead objects, kept so that later use is reported rather than undefined.
auto& graveyard() {
    static auto& objects = *new std::vector<Header*>;
    return objects;
}

auto& blockReferences() {
    static auto& references = *new std::map<const void*, long>;
    return references;
}

Selector intern(Selector selector) {
    return interned().try_emplace(selector, selector).first->second;
}

[[noreturn]] void die(const char* what, const ClassObject* type, Selector selector = "") {
    std::fprintf(stderr, "Objective-C runtime: %s [%s %s]\n", what, type != nullptr ? type->data->name : "?", selector);
    std::fflush(nullptr);
    std::abort();
}

void addMethods(ClassObject* type) {
    MethodTable& table = methodTables()[type];
    const MethodList* const list = type->data->methods;
    for (std::uint32_t index = 0; list != nullptr && index < list->count; ++index)
        table[intern(list->first[index].selector)] = list->first[index].implementation;
}

void realise(ClassObject* type) {
    if (methodTables().count(type) != 0)
        return;
    if (type->super != nullptr)
        realise(type->super);
    addMethods(type);
    addMethods(type->isa);
    if (type->super == nullptr)
        return;
    // Instance variables lie behind those that the superclass really has.
    const std::uint32_t start = (type->super->data->instanceSize + 7) & ~7U;
    if (start <= type->data->instanceStart)
        return;
    const std::uint32_t slide = start - type->data->instanceStart;
    const InstanceVariableList* const list = type->data->variables;
    for (std::uint32_t index = 0; list != nullptr && index < list->count; ++index) {
        if (list->first[index].offset != nullptr)
            *list->first[index].offset += slide;
    }
    type->data->instanceStart += slide;
    type->data->instanceSize += slide;
}

void* find(ClassObject* type, Selector selector) {
    for (; type != nullptr; type = type->super) {
        const MethodTable& table = methodTables()[type];
        if (const auto found = table.find(selector); found != table.end())
            return found->second;
    }
    return nullptr;
}

/// Calls one of the compiler's own methods for C++ instance variables, which each class has for its own ones.
void callForVariables(Object* object, const ClassObject* type, Selector selector) {
    MethodTable& table = methodTables()[const_cast<ClassObject*>(type)];
    if (const auto found = table.find(intern(selector)); found != table.end())
        reinterpret_cast<void (*)(Object*, Selector)>(found->second)(object, found->first);
}

void constructVariables(Object* object, const ClassObject* type) {
    if (type->super != nullptr)
        constructVariables(object, type->super);
    callForVariables(object, type, ".cxx_construct");
}

} // namespace

extern "C" {
extern ClassObject* __start_objc_classlist[];
extern ClassObject* __stop_objc_classlist[];
extern Selector __start_objc_selrefs[];
extern Selector __stop_objc_selrefs[];
void* _NSConcreteStackBlock[32];
void* _NSConcreteMallocBlock[32];
void* _NSConcreteGlobalBlock[32];
void* _objc_empty_cache = nullptr;
/// The class of the compiler's own text constants; ours stands in its place.
char __CFConstantStringClassReference[sizeof(ClassObject)];
extern ClassObject constantText __asm__("OBJC_CLASS_$_CorvantaConstantText");
void* _Block_copy(const void* block);
void _Block_release(const void* block);
Object* objc_msgSend(Object* object, Selector selector, ...);
}

namespace {

ClassObject* constantTextClass() {
    return reinterpret_cast<ClassObject*>(__CFConstantStringClassReference);
}

__attribute__((constructor(103))) void start() {
    for (ClassObject** type = __start_objc_classlist; type != __stop_objc_classlist; ++type)
        realise(*type);
    for (Selector* selector = __start_objc_selrefs; selector != __stop_objc_selrefs; ++selector)
        *selector = intern(*selector);
    std::memcpy(__CFConstantStringClassReference, &constantText, sizeof(ClassObject));
    methodTables()[constantTextClass()];
    constantTextClass()->super = &constantText;
}

bool isBlock(const Object* object) {
    auto** const type = reinterpret_cast<void**>(object->isa);
    return type == _NSConcreteStackBlock || type == _NSConcreteMallocBlock || type == _NSConcreteGlobalBlock;
}

bool isImmortal(const Object* object) {
    return object->isa == constantTextClass() || (object->isa->data->flags & isMetaClass) != 0;
}

Header* headerOf(Object* object) {
    Header* const header = reinterpret_cast<Header*>(object) - 1;
    if (header->magic != magicNumber)
        die("not an object", nullptr);
    return header;
}

bool isKindOf(const Object* object, const ClassObject* type) {
    for (const ClassObject* candidate = object->isa; candidate != nullptr; candidate = candidate->super) {
        if (candidate == type)
            return true;
    }
    return false;
}

} // namespace

namespace corvanta::testing {

std::map<std::string, long> livingObjects() {
    std::map<std::string, long> counts;
    for (const auto& [name, count] : living()) {
        if (count != 0)
            counts[name] = count;
    }
    return counts;
}

void endObject(void* pointer) {
    auto* const object = static_cast<Object*>(pointer);
    for (const ClassObject* type = object->isa; type != nullptr; type = type->super)
        callForVariables(object, type, ".cxx_destruct");
    for (Object** const reference : weakReferences()[object])
        *reference = nullptr;
    weakReferences().erase(object);
    --living()[object->isa->data->name];
    headerOf(object)->references = ended;
    graveyard().push_back(headerOf(object));
}

} // namespace corvanta::testing

extern "C" {
__attribute__((used)) void* corvanta_lookup(Object* object, Selector selector) {
    if (!isBlock(object) && !isImmortal(object)) {
        const long references = headerOf(object)->references;
        if (references <= 0 && references != ending)
            die("message to a deallocated object", object->isa, selector);
    }
    if (void* const method = find(object->isa, intern(selector)))
        return method;
    die("unrecognized selector", object->isa, selector);
}

__attribute__((used)) void* corvanta_lookup_super(void** super, Selector selector) {
    auto* const type = static_cast<ClassObject*>(super[1]);
    if (void* const method = find(type->super, intern(selector)))
        return method;
    die("unrecognized selector for super", type, selector);
}

Object* objc_alloc(ClassObject* type) {
    auto* const header = static_cast<Header*>(std::calloc(1, sizeof(Header) + type->data->instanceSize));
    header->references = 1;
    header->magic = magicNumber;
    auto* const object = reinterpret_cast<Object*>(header + 1);
    object->isa = type;
    constructVariables(object, type);
    ++living()[type->data->name];
    return object;
}

Object* objc_alloc_init(ClassObject* type) {
    return objc_msgSend(objc_alloc(type), intern("init"));
}

Object* objc_opt_new(ClassObject* type) {
    return objc_alloc_init(type);
}

ClassObject* objc_opt_class(Object* object) {
    if (object == nullptr)
        return nullptr;
    return (object->isa->data->flags & isMetaClass) != 0 ? reinterpret_cast<ClassObject*>(object) : object->isa;
}

bool objc_opt_isKindOfClass(Object* object, ClassObject* type) {
    return object != nullptr && isKindOf(object, type);
}

bool objc_opt_respondsToSelector(Object* object, Selector selector) {
    return object != nullptr && find(object->isa, intern(selector)) != nullptr;
}

bool corvanta_responds(Object* object, Selector selector) {
    return find(object->isa, intern(selector)) != nullptr;
}

bool corvanta_is_kind_of(Object* object, ClassObject* type) {
    return isKindOf(object, type);
}

Object* objc_retain(Object* object) {
    if (object == nullptr)
        return nullptr;
    if (isBlock(object))
        return static_cast<Object*>(_Block_copy(object));
    if (isImmortal(object))
        return object;
    if (headerOf(object)->references <= 0)
        die("retain of a deallocated object", object->isa);
    ++headerOf(object)->references;
    return object;
}

void objc_release(Object* object) {
    if (object == nullptr)
        return;
    if (isBlock(object)) {
        _Block_release(object);
        return;
    }
    if (isImmortal(object))
        return;
    if (headerOf(object)->references <= 0)
        die("over-release", object->isa);
    if (--headerOf(object)->references == 0) {
        headerOf(object)->references = ending;
        objc_msgSend(object, intern("dealloc"));
    }
}

Object* objc_autorelease(Object* object) {
    if (object != nullptr)
        pool().push_back(object);
    return object;
}

void* objc_autoreleasePoolPush() {
    pool().push_back(nullptr);
    return reinterpret_cast<void*>(pool().size());
}

void objc_autoreleasePoolPop(void* token) {
    const std::size_t size = reinterpret_cast<std::size_t>(token) - 1;
    while (pool().size() > size) {
        Object* const object = pool().back();
        pool().pop_back();
        objc_release(object);
    }
}

Object* objc_autoreleaseReturnValue(Object* object) {
    return objc_autorelease(object);
}

Object* objc_retainAutorelease(Object* object) {
    return objc_autorelease(objc_retain(object));
}

Object* objc_retainAutoreleaseReturnValue(Object* object) {
    return objc_autorelease(objc_retain(object));
}

Object* objc_retainAutoreleasedReturnValue(Object* object) {
    return objc_retain(object);
}

Object* objc_unsafeClaimAutoreleasedReturnValue(Object* object) {
    return object;
}

Object* objc_retainBlock(Object* object) {
    return static_cast<Object*>(_Block_copy(object));
}

void objc_storeStrong(Object** slot, Object* value) {
    Object* const old = *slot;
    *slot = objc_retain(value);
    objc_release(old);
}

Object* objc_storeWeak(Object** slot, Object* value) {
    if (*slot != nullptr)
        weakReferences()[*slot].erase(slot);
    *slot = value != nullptr && headerOf(value)->references > 0 ? value : nullptr;
    if (*slot != nullptr)
        weakReferences()[*slot].insert(slot);
    return *slot;
}

Object* objc_initWeak(Object** slot, Object* value) {
    *slot = nullptr;
    return objc_storeWeak(slot, value);
}

void objc_destroyWeak(Object** slot) {
    objc_storeWeak(slot, nullptr);
}

Object* objc_loadWeakRetained(Object** slot) {
    return *slot != nullptr && headerOf(*slot)->references > 0 ? objc_retain(*slot) : nullptr;
}

Object* objc_loadWeak(Object** slot) {
    return objc_autorelease(objc_loadWeakRetained(slot));
}

void objc_copyWeak(Object** to, Object** from) {
    objc_initWeak(to, *from);
}

void objc_moveWeak(Object** to, Object** from) {
    objc_initWeak(to, *from);
    objc_destroyWeak(from);
}

Object* objc_getProperty(Object* object, Selector, long offset, bool) {
    return objc_retainAutorelease(*reinterpret_cast<Object**>(reinterpret_cast<char*>(object) + offset));
}

void objc_setProperty_nonatomic_copy(Object* object, Selector, Object* value, long offset) {
    Object* const copy = value != nullptr ? objc_msgSend(value, intern("copyWithZone:"), nullptr) : nullptr;
    auto* const slot = reinterpret_cast<Object**>(reinterpret_cast<char*>(object) + offset);
    objc_release(*slot);
    *slot = copy;
}

void objc_setProperty_atomic_copy(Object* object, Selector selector, Object* value, long offset) {
    objc_setProperty_nonatomic_copy(object, selector, value, offset);
}

void objc_enumerationMutation(Object* object) {
    die("mutated while enumerated", object->isa);
}

void* _Block_copy(const void* pointer) {
    const auto* const block = static_cast<const Block*>(pointer);
    if (block == nullptr || block->isa == _NSConcreteGlobalBlock || (block->flags & blockIsGlobal) != 0)
        return const_cast<void*>(pointer);
    if (block->isa == _NSConcreteMallocBlock) {
        ++blockReferences()[pointer];
        return const_cast<void*>(pointer);
    }
    auto* const copy = static_cast<Block*>(std::malloc(block->descriptor->size));
    std::memcpy(copy, block, block->descriptor->size);
    copy->isa = _NSConcreteMallocBlock;
    blockReferences()[copy] = 1;
    ++living()["(block)"];
    if ((block->flags & blockHasCopy) != 0)
        block->descriptor->copy(copy, block);
    return copy;
}

void _Block_release(const void* pointer) {
    const auto* const block = static_cast<const Block*>(pointer);
    if (block == nullptr || block->isa != _NSConcreteMallocBlock)
        return;
    if (blockReferences()[pointer] <= 0)
        die("over-release of a block", nullptr);
    if (--blockReferences()[pointer] != 0)
        return;
    if ((block->flags & blockHasCopy) != 0)
        block->descriptor->dispose(block);
    --living()["(block)"];
    blockReferences().erase(pointer);
    std::free(const_cast<void*>(pointer));
}

void _Block_object_assign(void* destination, const void* object, int flags) {
    if ((flags & 0xf) == fieldIsBlock)
        *static_cast<const void**>(destination) = _Block_copy(object);
    else if ((flags & 0xf) == fieldIsObject)
        *static_cast<Object**>(destination) = objc_retain(static_cast<Object*>(const_cast<void*>(object)));
    else
        die("a block captures what this runtime does not know", nullptr);
}

void _Block_object_dispose(const void* object, int flags) {
    if ((flags & 0xf) == fieldIsBlock)
        _Block_release(object);
    else
        objc_release(static_cast<Object*>(const_cast<void*>(object)));
}
}

// Messages keep every register in which arguments travel, look the method up, and jump to it. A message to nil answers
// zeroes.
#define TRAMPOLINE(name, atNil, arguments, lookup, last)                                                               \
    __asm__(                                                                                                           \
        ".text\n.globl " name "\n.type " name ",@function\n" name ":\n" atNil                                          \
        "push %rbp\nmov %rsp,%rbp\nsub $192,%rsp\n"                                                                    \
        "mov %rdi,(%rsp)\nmov %rsi,8(%rsp)\nmov %rdx,16(%rsp)\nmov %rcx,24(%rsp)\n"                                    \
        "mov %r8,32(%rsp)\nmov %r9,40(%rsp)\nmov %rax,48(%rsp)\n"                                                      \
        "movups %xmm0,64(%rsp)\nmovups %xmm1,80(%rsp)\nmovups %xmm2,96(%rsp)\nmovups %xmm3,112(%rsp)\n"                \
        "movups %xmm4,128(%rsp)\nmovups %xmm5,144(%rsp)\nmovups %xmm6,160(%rsp)\nmovups %xmm7,176(%rsp)\n" arguments   \
        "call " lookup "\nmov %rax,%r11\n"                                                                             \
        "mov (%rsp),%rdi\nmov 8(%rsp),%rsi\nmov 16(%rsp),%rdx\nmov 24(%rsp),%rcx\n"                                    \
        "mov 32(%rsp),%r8\nmov 40(%rsp),%r9\nmov 48(%rsp),%rax\n"                                                      \
        "movups 64(%rsp),%xmm0\nmovups 80(%rsp),%xmm1\nmovups 96(%rsp),%xmm2\nmovups 112(%rsp),%xmm3\n"                \
        "movups 128(%rsp),%xmm4\nmovups 144(%rsp),%xmm5\nmovups 160(%rsp),%xmm6\nmovups 176(%rsp),%xmm7\n"             \
        "leave\n" last "jmp *%r11\n")
TRAMPOLINE("objc_msgSend",
           "test %rdi,%rdi\njnz 1f\nxor %eax,%eax\nxor %edx,%edx\nxorps %xmm0,%xmm0\nxorps %xmm1,%xmm1\nret\n1:\n", "",
           "corvanta_lookup", "");
TRAMPOLINE("objc_msgSend_stret", "test %rsi,%rsi\njnz 1f\nmov %rdi,%rax\nret\n1:\n", "mov %rsi,%rdi\nmov %rdx,%rsi\n",
           "corvanta_lookup", "");
TRAMPOLINE("objc_msgSendSuper2", "", "", "corvanta_lookup_super", "mov (%rdi),%rdi\n");
TRAMPOLINE("objc_msgSendSuper2_stret", "", "mov %rsi,%rdi\nmov %rdx,%rsi\n", "corvanta_lookup_super",
           "mov (%rsi),%rsi\n");
__asm__(".section .note.GNU-stack,\"\",@progbits\n.text\n");
