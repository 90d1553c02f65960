#include "localmapi/storage/NamedProperties.h"

#include "localmapi/storage/StoreError.h"

#include <utility>

namespace
{
constexpr std::int64_t firstId = 0x8000;
constexpr std::int64_t lastId = 0xFFFC;    // the store's own tags stand above

// The columns lid and name: one of them NULL.
std::pair<StoredValue, StoredValue> ColumnsOf(const PropertyName& name)
{
    if (const auto* number = std::get_if<std::int64_t>(&name.name))
        return {*number, {}};
    return {{}, std::get<std::string>(name.name)};
}

void BindName(Statement& statement, const PropertyName& name)
{
    const auto [lid, text] = ColumnsOf(name);
    statement.Bind(1, StoredValue(name.guid)).Bind(2, lid).Bind(3, text);
}

std::int64_t Find(Database& database, const PropertyName& name)
{
    Statement find =
        database.Prepare("SELECT id FROM named_property WHERE guid = ? AND lid IS ? AND name IS ?");
    BindName(find, name);
    return find.Step() ? find.Integer(0) : 0;
}

std::int64_t Create(Database& database, const PropertyName& name)
{
    Statement insert =
        database.Prepare("INSERT INTO named_property (guid, lid, name, id) VALUES (?, ?, ?, (SELECT "
                         "max(ifnull(max(id), 0) + 1, ?) FROM named_property))");
    BindName(insert, name);
    insert.Bind(4, firstId).Run();
    const std::int64_t id = database.LastInsertId();
    if (id > lastId)
        throw StoreError(StoreFault::Full, "The mail store has no room for more named properties.");
    return id;
}
}    // namespace

std::uint32_t FindNamedProperty(StoreFile& file, const PropertyName& name, bool create)
{
    const StoreFile::Lease lease = file.Use();
    std::int64_t id = Find(*lease, name);
    if (id == 0 && create)
    {
        Transaction transaction(*lease);
        // Another process may have been first.
        id = Find(*lease, name);
        if (id == 0)
            id = Create(*lease, name);
        transaction.Commit();
    }
    return static_cast<std::uint32_t>(id);
}

std::vector<NamedProperty> ListNamedProperties(StoreFile& file)
{
    const StoreFile::Lease lease = file.Use();
    Statement statement = lease->Prepare("SELECT id, guid, lid, name FROM named_property ORDER BY id");
    std::vector<NamedProperty> properties;
    while (statement.Step())
    {
        const StoredValue guid = statement.Value(1);
        const Blob* bytes = std::get_if<Blob>(&guid);
        if (!bytes)
            continue;
        NamedProperty property{static_cast<std::uint32_t>(statement.Integer(0)), {*bytes, statement.Text(3)}};
        if (const StoredValue lid = statement.Value(2); std::holds_alternative<std::int64_t>(lid))
            property.name.name = statement.Integer(2);
        properties.push_back(std::move(property));
    }
    return properties;
}
