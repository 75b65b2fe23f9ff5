// A recording connection whose faults reach the writes that go through recordsets, and commits.
#pragma once

#include <memory>
#include <utility>

#include "tests/fakes/RecordingConnection.h"

namespace kavidex::tests {

class FaultyConnection : public RecordingConnection {
public:
    explicit FaultyConnection(data::ConnectionPtr target)
        : RecordingConnection("", std::move(target)) {}

    // Every read, write, row update and commit counts as one step; called before it happens.
    std::function<void(int step)> onStep;
    int steps = 0;
    // Begins, schema reads and row deletions count too.
    bool countsAll = false;
    void FailStep(int n, bool onwards = false) {
        steps = 0;
        onStep = [n, onwards](int step) {
            if (step == n || (onwards && step > n))
                throw data::Error(data::errors::unspecified, "made to fail", "FaultyConnection");
        };
    }

    template <class Work>
    void Failing(int n, Work work) { // and no other step, nor what comes later
        FailStep(n);
        work();
        onStep = nullptr;
    }

    data::RecordsetPtr Open(const data::Command& command) override {
        Step();
        return std::make_unique<Rows>(RecordingConnection::Open(command), *this);
    }
    std::int64_t Execute(std::string_view statement) override {
        Step();
        return RecordingConnection::Execute(statement);
    }
    void BeginTrans() override {
        if (countsAll) Step();
        RecordingConnection::BeginTrans();
    }
    void CommitTrans() override {
        Step();
        RecordingConnection::CommitTrans();
    }
    data::RecordsetPtr OpenSchema(data::Schema schema) override {
        if (countsAll) Step();
        return RecordingConnection::OpenSchema(schema);
    }

private:
    void Step() {
        ++steps;
        if (onStep) onStep(steps);
    }

    class Rows : public data::Recordset {
    public:
        Rows(data::RecordsetPtr rows, FaultyConnection& owner)
            : lclRows(std::move(rows)), lclOwner(owner) {}
        bool IsOpen() const override { return lclRows->IsOpen(); }
        void Close() override { lclRows->Close(); }
        bool Eof() const override { return lclRows->Eof(); }
        bool Bof() const override { return lclRows->Bof(); }
        std::int64_t RecordCount() const override { return lclRows->RecordCount(); }
        std::int64_t AbsolutePosition() const override { return lclRows->AbsolutePosition(); }
        void SetAbsolutePosition(std::int64_t p) override { lclRows->SetAbsolutePosition(p); }
        void Move(std::int64_t rows) override { lclRows->Move(rows); }
        void MoveFirst() override { lclRows->MoveFirst(); }
        void MoveLast() override { lclRows->MoveLast(); }
        void MoveNext() override { lclRows->MoveNext(); }
        void MovePrevious() override { lclRows->MovePrevious(); }
        const std::vector<data::Field>& Fields() const override { return lclRows->Fields(); }
        const data::Value& Get(std::size_t field) const override { return lclRows->Get(field); }
        void Set(std::size_t field, data::Value value) override {
            lclRows->Set(field, std::move(value));
        }
        void AddNew() override { lclRows->AddNew(); }
        void Update() override {
            lclOwner.Step();
            lclRows->Update();
        }
        void CancelUpdate() override { lclRows->CancelUpdate(); }
        void Delete() override {
            if (lclOwner.countsAll) lclOwner.Step();
            lclRows->Delete();
        }
        void Requery() override { lclRows->Requery(); }
        void SetSort(std::string_view order) override { lclRows->SetSort(order); }
        std::string Sort() const override { return lclRows->Sort(); }
        void SetFilter(std::string_view criteria) override { lclRows->SetFilter(criteria); }
        std::string Filter() const override { return lclRows->Filter(); }

    private:
        data::RecordsetPtr lclRows;
        FaultyConnection& lclOwner;
    };
};

} // namespace kavidex::tests
