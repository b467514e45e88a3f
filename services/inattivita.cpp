#include "services/inattivita.h"

namespace orvalle::services {

bool Inattivita::daChiudere(bool sessioneInCorso) const {
  return sessioneInCorso && fermoDa() >= sogliaSecondi_;
}

}  // namespace orvalle::services
