// Values and objects as hosts and libraries exchange them: strings, locations, numbers, arrays and dictionaries that
// know their class at run time, and the root of the exceptions that libraries throw to their hosts.
//
// The classes are values: a copy shares nothing with its original. No operation here is synchronised, and distinct
// objects may be used by distinct threads. Text is bytes; a string may hold a zero byte, but whoever reads it by c_str
// sees the bytes before the first one. Failures are thrown as KX_EException; exhausted memory as std::bad_alloc.
//
// An operation that throws changes nothing, but for assignment of an array, a dictionary, a location or an exception: that
// may have taken over a part, and leaves an object that can be assigned anew, used as it then is, or destroyed.
//
// The virtual tables and type information live in libkxtypes alone, as every class has an operation that is compiled
// there. Private members are standard containers, so a host has to use the standard library that this one was built
// with, as the stream argument of PrintOn asks for anyway.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#if defined(__GNUC__)
#define KX_EXPORT __attribute__((visibility("default")))
#else
#define KX_EXPORT
#endif

class KX_IIteratable;
class KX_IUnpacking;
class KX_TAny;
class KX_TClass;
class KX_TObject;
class KX_TString;

/// Prepares the library. Has to give true before anything else is used; further calls change nothing.
extern "C" KX_EXPORT bool __KX_INITIALIZATION_FUNCTION_kxtypes__();

/// Run-time record of one class. Class objects live until the process ends and are never copied.
class KX_EXPORT KX_TClass
{
public:
    using Factory = KX_TObject* (*)();

    std::uint8_t registered; ///< 0 until the class has been asked for its class object by a query, then 1
    const char* name;        ///< the class name, zero-terminated; as long as the class object

    /// The class object of the class `name`: made from the other arguments on the first call for that name, the same
    /// one on every later call. `size` is that of an object in bytes, `superclass` is null for a root, `factory` makes
    /// a new object on the heap and is null for a class that has none. The first and the last argument are reserved:
    /// false and null.
    static KX_TClass* GetClassObject(
        bool reserved, const char* name, std::uint32_t size, const KX_TClass* superclass, Factory factory,
        bool (*reservedFunction)());

    const KX_TClass* Superclass() const; ///< null for a root
    std::uint32_t Size() const;          ///< bytes of an object
    KX_TObject* New() const;             ///< a new object, owned by the caller; null if the class has no factory

    KX_TClass(const KX_TClass&) = delete;
    KX_TClass& operator=(const KX_TClass&) = delete;
    ~KX_TClass();

private:
    KX_TClass(const char* className, std::uint32_t theSize, const KX_TClass* theSuperclass, Factory theFactory);

    std::string ownName;
    const KX_TClass* superclass;
    Factory factory;
    std::uint32_t size;
};

/// Root of all classes and interfaces: what an object can be asked about its class.
class KX_EXPORT KX_IInterface
{
public:
    KX_IInterface();
    KX_IInterface(const KX_IInterface&);
    KX_IInterface& operator=(const KX_IInterface&);

    virtual void* KX_Self() = 0; ///< address of the complete object

    /// Null: the address of the object's class object. Else the address of the part of the object that is of the class
    /// or interface `typeName`, or null if it has none. For a number class that is the address of the plain number.
    virtual const void* KX_DynamicInfo(const char* typeName) const = 0;

    virtual const KX_TClass& ClassObject() const = 0;
    virtual const char* ClassName() const = 0;                  ///< exact; as long as the class object
    virtual bool HasSuperclass(const char* typeName) const = 0; ///< true for the object's own class too
    virtual bool HasInterface(const char* typeName) const;      ///< true for interfaces of superclasses too
    virtual ~KX_IInterface();
    virtual const void* KX_Cast(const char* typeName) const = 0; ///< as KX_DynamicInfo; null for null

    /// As KX_Cast, but never null: throws a KX_EException that names both classes if the object is not of the class
    /// `typeName`. `file` and `line` are the caller's place in its source, for the exception.
    const void* DynamicCast(const char* typeName, const char* file, std::int32_t line) const;
};

/// Base of the value classes and of the exceptions.
class KX_EXPORT KX_TObject : public virtual KX_IInterface
{
public:
    KX_TObject();
    KX_TObject(const KX_TObject&);
    KX_TObject& operator=(const KX_TObject&);
    ~KX_TObject() override;

    static const char* KX_ClassName();        ///< "KX_TObject"; each class below has its own name,
    static const KX_TClass* KX_ClassObject(); ///< its own class object, and its own answer to a query

    const void* KX_DynamicInfo(const char* typeName) const override;
    const KX_TClass& ClassObject() const override;
    const char* ClassName() const override;
    bool HasSuperclass(const char* typeName) const override;
    const void* KX_Cast(const char* typeName) const override;

    /// As that of KX_IInterface; the second form is for changing the object.
    const void* DynamicCast(const char* typeName, const char* file, std::int32_t line) const;
    void* DynamicCast(const char* typeName, const char* file, std::int32_t line);
};

/// Something that can be thrown without its class being known.
class KX_EXPORT KX_IThrowable : public virtual KX_IInterface
{
public:
    /// Throws a copy of the object as its own class.
    [[noreturn]] virtual void KX_Throw() = 0;
    ~KX_IThrowable() override;
};

/// Where an object packs itself to, piece after piece.
class KX_EXPORT KX_IPacking
{
public:
    virtual void BeginBaseClass(const char* name) = 0;                 ///< opens the part of the base class `name`
    virtual void EndBaseClass(const char* name) = 0;                   ///< closes it
    virtual void WriteText(const char* bytes, std::uint32_t size) = 0; ///< `size` bytes of any value
    virtual void WriteUInt32(std::uint32_t number) = 0;                ///< a number
    virtual ~KX_IPacking();
};

/// Where an object unpacks itself from: gives the pieces in the order in which they were packed. An implementation
/// throws if the next piece is not what is asked for.
class KX_EXPORT KX_IUnpacking
{
public:
    virtual void BeginBaseClass(const char* name) = 0; ///< enters the part of the base class `name`
    virtual void EndBaseClass(const char* name) = 0;   ///< leaves it
    virtual KX_TString ReadText() = 0;                 ///< the next piece, which is text
    virtual std::uint32_t ReadUInt32() = 0;            ///< the next piece, which is a number
    virtual ~KX_IUnpacking();
};

/// Something that can be packed, unpacked, copied and compared without its class being known.
class KX_EXPORT KX_IPackable : public virtual KX_IInterface
{
public:
    virtual void KX_Pack(KX_IPacking& packing) const = 0; ///< writes the object's content

    /// Replaces the object's content. If the source throws, the object is as before.
    virtual void KX_Unpack(KX_IUnpacking& unpacking) = 0;
    virtual KX_IPackable* KX_Clone() const = 0;                   ///< a new heap copy, owned by the caller
    virtual bool KX_IsIdent(const KX_IPackable& other) const = 0; ///< of the same class, with equal packed content

    /// Replaces the content of the object of the same class at `target`, as its KX_Self gives it, by that of this one.
    virtual void KX_Move(void* target);
    virtual KX_IPackable& operator=(KX_IUnpacking& unpacking); ///< KX_Unpack
    virtual const KX_TClass& KX_PackClassObject() const;       ///< the class that stands for a packed form
    virtual std::uint32_t KX_PackTypeID() const;               ///< its name as a 32-bit FNV-1a hash

    KX_IPackable();
    KX_IPackable(const KX_IPackable&);
    KX_IPackable& operator=(const KX_IPackable&);
    ~KX_IPackable() override;
};

/// Something that can be written for a person to read.
class KX_EXPORT KX_IPrintable : public virtual KX_IInterface
{
public:
    virtual void PrintOn(std::ostream& stream) const = 0; ///< one line, without its end
    ~KX_IPrintable() override;
};

/// Text: bytes of any value.
class KX_EXPORT KX_TString : public KX_TObject, public virtual KX_IPackable
{
public:
    static constexpr std::uint32_t ToTerminator = static_cast<std::uint32_t>(-1);

    KX_TString();
    /// The first `length` bytes at `text`, zero bytes included, or with ToTerminator those before the first zero byte.
    /// Null stands for no text.
    explicit KX_TString(const char* text, std::uint32_t length = ToTerminator);
    KX_TString(const KX_TString&);
    KX_TString& operator=(const KX_TString&);
    ~KX_TString() override;

    virtual const char* c_str() const; ///< the bytes and a zero byte after them; valid until the string changes
    std::size_t Length() const;        ///< bytes, zero bytes included

    static const char* KX_ClassName();
    static const KX_TClass* KX_ClassObject();
    void* KX_Self() override;
    const void* KX_DynamicInfo(const char* typeName) const override;
    void KX_Pack(KX_IPacking& packing) const override;
    void KX_Unpack(KX_IUnpacking& unpacking) override;
    KX_IPackable* KX_Clone() const override;
    bool KX_IsIdent(const KX_IPackable& other) const override;

private:
    std::string bytes;
};

/// A location: a path on the local file system, or none.
class KX_EXPORT KX_TURL : public KX_TObject
{
public:
    KX_TURL();                                        ///< a location that has no local name
    explicit KX_TURL(const KX_TString& theLocalName); ///< the path as it stands: nothing is normalised
    KX_TURL(const KX_TURL&);
    KX_TURL& operator=(const KX_TURL&);
    ~KX_TURL() override;

    virtual KX_TString LocalName() const; ///< the path; throws KX_EException if the location has none

    static const char* KX_ClassName();
    static const KX_TClass* KX_ClassObject();
    void* KX_Self() override;
    const void* KX_DynamicInfo(const char* typeName) const override;

private:
    KX_TString localName;
    bool isLocal;
};

/// A 64-bit float.
class KX_EXPORT KX_TDouble : public KX_TObject
{
public:
    explicit KX_TDouble(double value = 0);
    KX_TDouble(const KX_TDouble&);
    KX_TDouble& operator=(const KX_TDouble&);
    ~KX_TDouble() override;
    double Value() const;

    static const char* KX_ClassName();
    static const KX_TClass* KX_ClassObject();
    void* KX_Self() override;
    const void* KX_DynamicInfo(const char* typeName) const override;

private:
    double value;
};

/// A 32-bit float.
class KX_EXPORT KX_TFloat : public KX_TObject
{
public:
    explicit KX_TFloat(float value = 0);
    KX_TFloat(const KX_TFloat&);
    KX_TFloat& operator=(const KX_TFloat&);
    ~KX_TFloat() override;
    float Value() const;

    static const char* KX_ClassName();
    static const KX_TClass* KX_ClassObject();
    void* KX_Self() override;
    const void* KX_DynamicInfo(const char* typeName) const override;

private:
    float value;
};

/// A signed 32-bit number.
class KX_EXPORT KX_TInt32 : public KX_TObject
{
public:
    explicit KX_TInt32(std::int32_t value = 0);
    KX_TInt32(const KX_TInt32&);
    KX_TInt32& operator=(const KX_TInt32&);
    ~KX_TInt32() override;
    std::int32_t Value() const;

    static const char* KX_ClassName();
    static const KX_TClass* KX_ClassObject();
    void* KX_Self() override;
    const void* KX_DynamicInfo(const char* typeName) const override;

private:
    std::int32_t value;
};

/// An unsigned 32-bit number.
class KX_EXPORT KX_TUInt32 : public KX_TObject
{
public:
    explicit KX_TUInt32(std::uint32_t value = 0);
    KX_TUInt32(const KX_TUInt32&);
    KX_TUInt32& operator=(const KX_TUInt32&);
    ~KX_TUInt32() override;
    std::uint32_t Value() const;

    static const char* KX_ClassName();
    static const KX_TClass* KX_ClassObject();
    void* KX_Self() override;
    const void* KX_DynamicInfo(const char* typeName) const override;

private:
    std::uint32_t value;
};

/// True or false.
class KX_EXPORT KX_TBool : public KX_TObject
{
public:
    explicit KX_TBool(bool value = false);
    KX_TBool(const KX_TBool&);
    KX_TBool& operator=(const KX_TBool&);
    ~KX_TBool() override;
    bool Value() const;

    static const char* KX_ClassName();
    static const KX_TClass* KX_ClassObject();
    void* KX_Self() override;
    const void* KX_DynamicInfo(const char* typeName) const override;

private:
    bool value;
};

/// Any value. It owns a copy of what it holds and is transparent: all queries and casts are answered by that value.
/// One that holds nothing answers for itself, as "KX_TAny".
class KX_EXPORT KX_TAny : public KX_TObject
{
public:
    KX_TAny();
    /// Holds a copy of `value`, which is of exactly the class `Value`.
    template <class Value, class = std::enable_if_t<std::is_base_of_v<KX_TObject, Value>>>
    KX_TAny(const Value& theValue)
        : value(new Value(theValue))
        , copy(&CopyOf<Value>)
    {
    }
    KX_TAny(const KX_TAny& other);
    KX_TAny(KX_TAny&& other) noexcept;
    KX_TAny& operator=(KX_TAny other) noexcept;
    ~KX_TAny() override;

    static const char* KX_ClassName();
    static const KX_TClass* KX_ClassObject();
    void* KX_Self() override;
    const void* KX_DynamicInfo(const char* typeName) const override;

private:
    template <class Value>
    static KX_TObject* CopyOf(const KX_TObject& value)
    {
        return new Value(dynamic_cast<const Value&>(value));
    }

    std::unique_ptr<KX_TObject> value;      // null: holds nothing
    KX_TObject* (*copy)(const KX_TObject&); // a new heap copy of value, as its own class
};

/// Values in order, addressed by position from 0.
class KX_EXPORT KX_TArray : public KX_TObject
{
public:
    KX_TArray();
    KX_TArray(const KX_TArray&);
    KX_TArray& operator=(const KX_TArray&);
    ~KX_TArray() override;

    virtual std::uint32_t Count() const;                  ///< elements
    virtual const KX_TAny& At(std::uint32_t index) const; ///< throws KX_EException if `index` is not below Count
    void Append(const KX_TAny& value);                    ///< invalidates what At gave

    static const char* KX_ClassName();
    static const KX_TClass* KX_ClassObject();
    void* KX_Self() override;
    const void* KX_DynamicInfo(const char* typeName) const override;

private:
    std::vector<KX_TAny> elements;
};

/// An array under a name of its own: the class of stack traces.
class KX_EXPORT KX_TList : public KX_TArray
{
public:
    KX_TList();
    KX_TList(const KX_TList&);
    KX_TList& operator=(const KX_TList&);
    ~KX_TList() override;

    static const char* KX_ClassName();
    static const KX_TClass* KX_ClassObject();
    void* KX_Self() override;
    const void* KX_DynamicInfo(const char* typeName) const override;
};

/// A read-only walk over entries: while (!i.IsDone()) { i.Key(); i.Value(); i.Next(); }
/// The container has to live, unchanged, as long as the walk.
class KX_EXPORT KX_TConstIterator
{
public:
    explicit KX_TConstIterator(const KX_IIteratable& container); ///< on the first entry, if there is one
    KX_TConstIterator(const KX_TConstIterator&) = delete;
    KX_TConstIterator& operator=(const KX_TConstIterator&) = delete;

    virtual bool IsDone() const;             ///< true past the last entry; nothing below may then be called
    virtual const KX_IPackable& Key() const; ///< valid as long as the container holds the entry; so is the value
    virtual const KX_TAny& Value() const;    ///< the value under the key
    virtual void Next();                     ///< moves to the next entry
    virtual ~KX_TConstIterator();

protected:
    KX_TConstIterator(); ///< for a container's own walk, which overrides all operations

private:
    std::unique_ptr<KX_TConstIterator> walk; // the container's own walk; null in that one itself
};

/// Something that a KX_TConstIterator can walk.
class KX_EXPORT KX_IIteratable : public virtual KX_IInterface
{
public:
    virtual std::unique_ptr<KX_TConstIterator> KX_NewWalk() const = 0; ///< the container's own walk, never null
    ~KX_IIteratable() override;
};

/// Values under text keys. A walk gives the entries sorted by key: bytes compare as unsigned numbers, and a key that is
/// the start of another comes first. An operation's `key` is zero-terminated bytes.
class KX_EXPORT KX_TDict : public KX_TObject, public virtual KX_IIteratable
{
public:
    KX_TDict();
    KX_TDict(const KX_TDict& other, std::uint32_t reserved = 0); ///< a copy; the number is without meaning: 0
    KX_TDict& operator=(const KX_TDict&);
    ~KX_TDict() override;

    virtual bool HasKey(const char* key) const; ///< whether there is an entry under `key`

    /// The value under `key`; valid until the entry is set anew or the dictionary is gone. Throws KX_EException if the
    /// key is absent.
    virtual KX_TAny& At(const char* key);

    /// The string under `key`, null if the key is absent. Throws KX_EException if the value is not a string.
    virtual const KX_TString* GetString(const char* key) const;

    void Set(const char* key, const KX_TAny& value);       ///< adds the entry, or replaces its value
    void Set(const KX_TString& key, const KX_TAny& value); ///< the same for a key that may hold zero bytes

    static const char* KX_ClassName();
    static const KX_TClass* KX_ClassObject();
    void* KX_Self() override;
    const void* KX_DynamicInfo(const char* typeName) const override;
    std::unique_ptr<KX_TConstIterator> KX_NewWalk() const override;

private:
    struct Entry
    {
        KX_TString key;
        KX_TAny value;
    };
    using Entries = std::map<std::string, Entry>; // by the bytes of the key

    Entries entries;
};

/// Base of all exceptions that a library throws to its host. Not a std::exception. Thrown by
///     exception.__PREPARE_FOR_THROW__(__LINE__, file).KX_Throw();
/// which keeps its class, and caught by constant reference.
class KX_EXPORT KX_EException : public KX_TObject,
                                public virtual KX_IThrowable,
                                public virtual KX_IPackable,
                                public virtual KX_IPrintable
{
public:
    KX_EException();
    explicit KX_EException(const KX_TString& theMessage);
    KX_EException(const KX_EException&);
    KX_EException& operator=(const KX_EException&);
    ~KX_EException() override;

    virtual std::uint32_t KX_ExceptionLine() const; ///< 0 before __PREPARE_FOR_THROW__
    virtual const char* KX_ExceptionFile() const;   ///< empty before __PREPARE_FOR_THROW__; as long as the exception
    virtual const KX_TList& KX_StackTrace() const;  ///< empty: none is recorded
    virtual const KX_TString& KX_Message() const;   ///< what failed
    virtual KX_TString& KX_Message();
    virtual const KX_TAny& KX_Data() const; ///< whatever the thrower adds; holds nothing unless set
    virtual KX_TAny& KX_Data();

    /// Records where the exception is thrown: line and zero-terminated file name. Gives the object itself.
    KX_EException& __PREPARE_FOR_THROW__(std::uint32_t theLine, const char* theFile);

    static const char* KX_ClassName();
    static const KX_TClass* KX_ClassObject();
    void* KX_Self() override;
    const void* KX_DynamicInfo(const char* typeName) const override;
    [[noreturn]] void KX_Throw() override;
    void KX_Pack(KX_IPacking& packing) const override; ///< message, file and line
    void KX_Unpack(KX_IUnpacking& unpacking) override;
    KX_IPackable* KX_Clone() const override;
    bool KX_IsIdent(const KX_IPackable& other) const override;

    /// "<class>: <message> (<file>:<line>)", the parentheses only if the exception was prepared for throwing.
    void PrintOn(std::ostream& stream) const override;

private:
    KX_TString message;
    std::string file;
    std::uint32_t line;
    KX_TList stackTrace;
    KX_TAny data;
};
