#pragma once

// A folder's messages in one order, as the store held them when the window was made: the
// container the module lists. A small folder (or a store in memory) is read whole at once; a
// large one is read a page at a time through a read transaction of its own, walking the
// folder's index from the nearest page already read (keyset paging: no OFFSET, no count of
// what lies before), so that opening, re-sorting and jumping to the last page cost the same at
// a million messages as at a hundred.

#include "gsm/message.h"
#include "suite/telephony/database.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tessaly::telephony {

class MessageRecord;
class Store;

class MessageWindow final : public GSM::MessageContainer {
public:
    static constexpr int kPageSize = 128;
    static constexpr int kStatuses = 10;

    // Reads the folder's ids and messages at once through the store's own connection.
    static std::unique_ptr<MessageWindow> readWhole(Store& store, Database& db, int folder,
                                                    int sortKey);
    // Reads pages on demand through `reader`, which shows the store as it is now for as long as
    // the window keeps it.
    static std::unique_ptr<MessageWindow> readByPage(Store& store, std::unique_ptr<Database> reader,
                                                     int folder, int sortKey);
    ~MessageWindow() override;

    int size() const override { return count_; }
    bool isEmpty() const override { return count_ == 0; }
    // Null outside the folder, for a message deleted since the window was made, and for a page
    // not read before the window let go of its reader.
    GSM::Message* get(int position) const override;
    int getFirst(GSM::Message::Status status) const override;

    // Ends the read transaction: pages read so far still answer.
    void releaseReader();
    bool holdsReader() const { return reader_ != nullptr; }

private:
    // The sort key of one message: the columns its order compares, the id last.
    struct Key {
        std::int64_t status = 0;
        std::u16string name;
        std::int64_t date = 0;
        std::int64_t id = 0;
    };
    struct Page {
        std::vector<long> ids;
        Key first;
        Key last;
    };

    MessageWindow(Store& store, int folder, int sortKey)
        : store_(store)
        , folder_(folder)
        , sortKey_(sortKey) {}
    bool readCounts(Database& db);
    long idAt(int position) const;
    bool readPage(int page) const;
    // Reads `rows` ids in order after `from` (from the start when null) starting at `position`,
    // or before it (from the end when null) ending at `position`, and keeps every whole page.
    void walk(const Key* from, int position, int rows, bool forward) const;
    Statement prepare(const Key* from, bool forward, bool counting, int status) const;
    Key keyOf(const Statement& row) const;

    Store& store_;
    int folder_;
    int sortKey_;
    int count_ = 0;
    std::array<int, kStatuses> statusCounts_{};
    std::unique_ptr<Database> reader_;
    // Read whole: every id, and the messages held for as long as the window lives.
    std::vector<long> ids_;
    std::vector<std::shared_ptr<MessageRecord>> held_;
    bool whole_ = false;
    mutable std::map<int, Page> pages_;
};

} // namespace tessaly::telephony
