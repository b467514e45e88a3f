export { RealtimeClient } from '@supabase/realtime-js';
