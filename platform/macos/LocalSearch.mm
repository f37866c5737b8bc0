// SPDX-License-Identifier: MIT
#include "LocalSearch.h"

#include "NativeValues.h"

#import <MapKit/MapKit.h>

namespace corvanta {

namespace {

MapItem itemOf(MKMapItem* item) {
    NSString* const name = item.name;
    const CLLocationCoordinate2D coordinate = item.placemark.coordinate;
    return {name == nil ? std::nullopt : std::optional(textOf(name)), {coordinate.latitude, coordinate.longitude}};
}

} // namespace

void startLocalSearch(const PlaceCompletion& completion, std::function<void(const LocalSearchOutcome&)> done) {
    auto* const suggestion = (__bridge MKLocalSearchCompletion*)completion.source.get();
    MKLocalSearchRequest* const request = [[MKLocalSearchRequest alloc] initWithCompletion:suggestion];
    MKLocalSearch* const search = [[MKLocalSearch alloc] initWithRequest:request];
    [search startWithCompletionHandler:^(MKLocalSearchResponse* response, NSError* error) {
        // A search that nobody keeps may end without an answer.
        (void)search;
        LocalSearchOutcome outcome;
        for (MKMapItem* item in response.mapItems)
            outcome.items.push_back(itemOf(item));
        if (error != nil)
            outcome.failure = textOf(error.localizedDescription);
        done(outcome);
    }];
}

} // namespace corvanta
